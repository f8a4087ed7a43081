#include "fuzz/monkey/DialogKeeper.h"

#include <QAbstractButton>
#include <QAbstractItemView>
#include <QAction>
#include <QApplication>
#include <QDialogButtonBox>
#include <QFileDialog>
#include <QLineEdit>
#include <QMessageBox>
#include <QPointer>
#include <QTimer>

namespace {

constexpr int kInterval = 3;
/// A dialog that has refused this many answers gets cancelled.
constexpr int kPatience = 4;

void press(const QDialogButtonBox *buttons, QDialogButtonBox::ButtonRole role)
{
    for (QAbstractButton *button : buttons->buttons()) {
        if (buttons->buttonRole(button) == role && button->isEnabled()) {
            button->click();
            return;
        }
    }
}

} // namespace

DialogKeeper::DialogKeeper(QObject *parent)
    : QObject(parent)
    , m_timer(new QTimer(this))
{
    connect(m_timer, &QTimer::timeout, this, &DialogKeeper::look);
    m_timer->start(kInterval);
}

DialogKeeper::~DialogKeeper() = default;

void DialogKeeper::prepare(const QString &path, bool agrees, int choice)
{
    m_path = path;
    m_agrees = agrees;
    m_choice = choice;
    m_looks = 0;
    m_looksAtPopups = 0;
    m_openedPath.clear();
    m_savedPath.clear();
}

void DialogKeeper::look()
{
    // Begins anew: a timer that is being served is not served again by the loop of a further
    // dialog, which an answer may bring up.
    m_timer->start();
    auto *dialog = qobject_cast<QDialog *>(QApplication::activeModalWidget());
    QWidget *popup = QApplication::activePopupWidget();
    if (popup != nullptr) {
        // A menu stays open from event to event, unless the event does not return before it closes.
        if (++m_looksAtPopups > kPatience) {
            choose(popup);
        }
    } else if (dialog != nullptr && dialog->isVisible()) {
        ++m_looks;
        answer(dialog);
    }
}

void DialogKeeper::choose(QWidget *popup) const
{
    const QPointer<QWidget> guard(popup);
    const QList<QAction *> actions = popup->actions();
    if (!actions.isEmpty() && m_agrees) {
        QAction *action = actions.at(m_choice % actions.size());
        action->trigger();
    }
    if (guard != nullptr) {
        guard->close();
    }
}

void DialogKeeper::answer(QDialog *dialog)
{
    if (auto *files = qobject_cast<QFileDialog *>(dialog)) {
        answerFileDialog(files);
        return;
    }
    const auto *question = qobject_cast<QMessageBox *>(dialog);
    if (question != nullptr && m_agrees) {
        if (QAbstractButton *yes = question->button(QMessageBox::Yes)) {
            yes->click();
            return;
        }
    }
    dialog->reject();
}

void DialogKeeper::answerFileDialog(QFileDialog *dialog)
{
    auto *name = dialog->findChild<QLineEdit *>(QStringLiteral("fileNameEdit"));
    if (m_path.isEmpty() || m_looks > kPatience || name == nullptr) {
        dialog->reject();
        return;
    }
    name->setText(m_path);
    for (QAbstractItemView *files : dialog->findChildren<QAbstractItemView *>()) {
        files->clearSelection();
    }
    connect(dialog, &QDialog::accepted, this, [this, dialog] { noteAnswer(*dialog); });
    press(dialog->findChild<QDialogButtonBox *>(), QDialogButtonBox::AcceptRole);
}

void DialogKeeper::noteAnswer(const QFileDialog &dialog)
{
    // The program's own package dialogs, not the one that chooses firmware.
    if (dialog.windowTitle() != QLatin1String("ZEL File Path")) {
        return;
    }
    const QString path = dialog.selectedFiles().value(0);
    (dialog.acceptMode() == QFileDialog::AcceptSave ? m_savedPath : m_openedPath) = path;
}
