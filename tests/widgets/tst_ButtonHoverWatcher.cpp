#include "widgets/ButtonHoverWatcher.h"

#include "tests/support/Activation.h"
#include "tests/support/ZelTest.h"

#include <QApplication>
#include <QHBoxLayout>
#include <QPixmap>
#include <QPushButton>
#include <QSignalSpy>
#include <QToolButton>

#include <vector>

namespace {

QIcon plainIcon(Qt::GlobalColor color)
{
    QPixmap pixmap(16, 16);
    pixmap.fill(color);
    return {pixmap};
}

/// Moves the mouse to and fro around the middle of @p part, as a hand does, until the button shows
/// @p icon. A desktop may lose one of two moves that follow each other at once.
bool moveUntilShown(QWidget &part, const QToolButton &button, const QIcon &icon)
{
    int step = 0;
    return QTest::qWaitFor([&] {
        ++step;
        QTest::mouseMove(&part, part.rect().center() + QPoint(step % 3, 0));
        return button.icon().cacheKey() == icon.cacheKey();
    });
}

/// Notes the enter and leave events that reach an object.
class EventRecorder final : public QObject
{
public:
    std::vector<QEvent::Type> seen;

    bool eventFilter(QObject *watched, QEvent *event) override
    {
        if (event->type() == QEvent::Enter || event->type() == QEvent::Leave) {
            seen.push_back(event->type());
        }
        return QObject::eventFilter(watched, event);
    }
};

} // namespace

class tst_ButtonHoverWatcher : public ZelTest
{
    Q_OBJECT

private slots:
    void mouseOverTheButtonShowsTheHoverIcon();
    void enterAndLeaveAreConsumed();
    void otherEventsReachTheButton();
    void aPushButtonIsLeftAlone();
    void oneWatcherServesSeveralButtons();
    void iconsAreCopied();

private:
    static bool send(QWidget *widget, QEvent::Type type);

    const QIcon m_normal = plainIcon(Qt::blue);
    const QIcon m_hover = plainIcon(Qt::red);
};

bool tst_ButtonHoverWatcher::send(QWidget *widget, QEvent::Type type)
{
    QEvent event(type);
    return QCoreApplication::sendEvent(widget, &event);
}

void tst_ButtonHoverWatcher::mouseOverTheButtonShowsTheHoverIcon()
{
    QWidget window;
    window.resize(200, 200);
    QWidget aside(&window);
    aside.setGeometry(0, 0, 20, 20);
    QToolButton button(&window);
    button.setGeometry(80, 80, 40, 40);
    button.setIcon(m_normal);
    ButtonHoverWatcher watcher(m_normal, m_hover);
    button.installEventFilter(&watcher);
    QVERIFY(showActive(window));
    QVERIFY(moveUntilShown(aside, button, m_normal));

    QVERIFY(moveUntilShown(button, button, m_hover));

    QVERIFY(moveUntilShown(aside, button, m_normal));
}

void tst_ButtonHoverWatcher::enterAndLeaveAreConsumed()
{
    QToolButton button;
    EventRecorder recorder;
    button.installEventFilter(&recorder);
    ButtonHoverWatcher watcher(m_normal, m_hover);
    button.installEventFilter(&watcher);

    QVERIFY(send(&button, QEvent::Enter));
    QVERIFY(send(&button, QEvent::Leave));

    QVERIFY(recorder.seen.empty());
    QCOMPARE(button.icon().cacheKey(), m_normal.cacheKey());
}

void tst_ButtonHoverWatcher::otherEventsReachTheButton()
{
    QToolButton button;
    button.setIcon(m_normal);
    ButtonHoverWatcher watcher(m_normal, m_hover);
    button.installEventFilter(&watcher);
    const QSignalSpy clicked(&button, &QToolButton::clicked);

    QTest::mouseClick(&button, Qt::LeftButton);

    QCOMPARE(clicked.count(), 1);
    QCOMPARE(button.icon().cacheKey(), m_normal.cacheKey());
}

void tst_ButtonHoverWatcher::aPushButtonIsLeftAlone()
{
    const QIcon own = plainIcon(Qt::green);
    QPushButton button(own, QString());
    EventRecorder recorder;
    button.installEventFilter(&recorder);
    ButtonHoverWatcher watcher(m_normal, m_hover);
    button.installEventFilter(&watcher);

    send(&button, QEvent::Enter);
    QCOMPARE(button.icon().cacheKey(), own.cacheKey());
    send(&button, QEvent::Leave);
    QCOMPARE(button.icon().cacheKey(), own.cacheKey());

    QCOMPARE(recorder.seen, (std::vector<QEvent::Type>{QEvent::Enter, QEvent::Leave}));
}

void tst_ButtonHoverWatcher::oneWatcherServesSeveralButtons()
{
    QToolButton first;
    QToolButton second;
    ButtonHoverWatcher watcher(m_normal, m_hover);
    first.installEventFilter(&watcher);
    second.installEventFilter(&watcher);

    send(&first, QEvent::Enter);
    QCOMPARE(first.icon().cacheKey(), m_hover.cacheKey());
    QVERIFY(second.icon().isNull());

    send(&first, QEvent::Leave);
    send(&second, QEvent::Enter);
    QCOMPARE(first.icon().cacheKey(), m_normal.cacheKey());
    QCOMPARE(second.icon().cacheKey(), m_hover.cacheKey());
}

void tst_ButtonHoverWatcher::iconsAreCopied()
{
    QIcon normal = m_normal;
    QIcon hover = m_hover;
    ButtonHoverWatcher watcher(normal, hover);
    QToolButton button;
    button.installEventFilter(&watcher);
    normal = QIcon();
    hover = QIcon();

    send(&button, QEvent::Enter);
    QCOMPARE(button.icon().cacheKey(), m_hover.cacheKey());
    send(&button, QEvent::Leave);
    QCOMPARE(button.icon().cacheKey(), m_normal.cacheKey());
}

ZEL_TEST_MAIN(tst_ButtonHoverWatcher)
#include "tst_ButtonHoverWatcher.moc"
