#include "tests/support/WindowDriver.h"
#include "tests/support/Activation.h"

#include <QAbstractButton>
#include <QAbstractItemView>
#include <QApplication>
#include <QClipboard>
#include <QDialogButtonBox>
#include <QFileDialog>
#include <QLabel>
#include <QLineEdit>
#include <QPointer>
#include <QTest>
#include <QTimer>

#include <algorithm>

namespace driver {

namespace {

constexpr int kPollInterval = 20;
constexpr int kPatience = 10000;

QWidget *popup(const QWidget *window)
{
    return window->findChild<QWidget *>(QStringLiteral("messagePopup"));
}

QLabel *messageLabel(const QWidget *window)
{
    return popup(window)->findChild<QLabel *>(QStringLiteral("messageLabel"));
}

} // namespace

void onNextDialog(const std::function<void(QWidget *)> &action)
{
    auto *poll = new QTimer(qApp);
    QObject::connect(poll, &QTimer::timeout, poll, [poll, action, waited = 0]() mutable {
        QWidget *dialog = QApplication::activeModalWidget();
        waited += kPollInterval;
        if (dialog == nullptr && waited < kPatience) {
            return;
        }
        poll->stop();
        poll->deleteLater();
        if (dialog == nullptr) {
            QTest::qFail("no dialog appeared", __FILE__, __LINE__);
            return;
        }
        const QPointer<QWidget> guard(dialog);
        action(dialog);
        if (guard != nullptr && guard->isVisible()) {
            QTest::qFail("the dialog did not close", __FILE__, __LINE__);
            guard->close();
        }
    });
    poll->start(kPollInterval);
}

void answerFileDialog(const QString &path, const std::function<void()> &afterwards)
{
    onNextDialog([path, afterwards](QWidget *dialog) {
        auto *name = dialog->findChild<QLineEdit *>(QStringLiteral("fileNameEdit"));
        QVERIFY(name != nullptr);
        QVERIFY(activate(*dialog));
        // Not typed key by key: the completer's popup would take the next click. What typing does
        // besides is to take back the selection in the list of files.
        name->setText(path);
        for (QAbstractItemView *files : dialog->findChildren<QAbstractItemView *>()) {
            files->clearSelection();
        }
        auto *buttons = dialog->findChild<QDialogButtonBox *>();
        for (QAbstractButton *button : buttons->buttons()) {
            if (buttons->buttonRole(button) == QDialogButtonBox::AcceptRole) {
                QTest::mouseClick(button, Qt::LeftButton);
            }
        }
        if (afterwards) {
            afterwards();
        }
    });
}

void cancelFileDialog()
{
    onNextDialog([](QWidget *dialog) { QTest::keyClick(dialog, Qt::Key_Escape); });
}

void retype(QLineEdit *field, const QString &text)
{
    QTest::mouseClick(field, Qt::LeftButton);
    QTest::keyClick(field, Qt::Key_A, Qt::ControlModifier);
    if (text.isEmpty()) {
        QTest::keyClick(field, Qt::Key_Delete);
    } else {
        enter(field, text);
    }
}

void enter(QWidget *field, const QString &text)
{
    const bool hasKeys = std::all_of(text.begin(), text.end(),
                                     [](QChar character) { return character.unicode() < 0x80; });
    if (hasKeys) {
        QTest::keyClicks(field, text);
        return;
    }
    QApplication::clipboard()->setText(text);
    QTest::keyClick(field, Qt::Key_V, Qt::ControlModifier);
}

QString shownMessage(const QWidget *window)
{
    const bool shown = QTest::qWaitFor([window] { return popup(window)->isVisible(); });
    return shown ? messageLabel(window)->text() : QString();
}

bool isErrorMessage(const QWidget *window)
{
    return messageLabel(window)->styleSheet().contains(QLatin1String("rgb(199, 3, 27)"));
}

bool isMessageVisible(const QWidget *window)
{
    return popup(window)->isVisible();
}

} // namespace driver
