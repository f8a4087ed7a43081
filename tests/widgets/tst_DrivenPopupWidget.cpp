#include "widgets/DrivenPopupWidget.h"

#include "tests/support/Activation.h"
#include "tests/support/ZelTest.h"
#include "widgets/DrivenPopupWidget_p.h"

#include <QApplication>
#include <QLineEdit>
#include <QPropertyAnimation>
#include <QSignalSpy>
#include <QTimer>
#include <QVBoxLayout>
#include <QWindow>
#include <QWindowStateChangeEvent>

#include <memory>

namespace {

/// Long enough that a test is sure to meet the animation running.
constexpr uint kLong = 60000;

/// An active window with a field, a base widget in it and a popup over that.
struct Stage
{
    Stage()
    {
        window.setGeometry(200, 150, 400, 300);
        base = new QWidget(&window);
        base->setGeometry(10, 20, 300, 200);
        edit = new QLineEdit(&window);
        edit->setGeometry(10, 240, 200, 30);
        popup = new DrivenPopupWidget(base);
        auto *layout = new QVBoxLayout(popup);
        layout->setSizeConstraint(QLayout::SetFixedSize);
        layout->setContentsMargins(QMargins());
        auto *content = new QWidget(popup);
        content->setFixedSize(120, 20);
        layout->addWidget(content);
        popup->setAlignment(Qt::AlignLeft | Qt::AlignTop);
        popup->setEffectDuration(0);
        priv = popup->findChild<DrivenPopupWidgetPrivate *>();
        edit->setFocus();
    }

    [[nodiscard]] bool isReady() { return showActive(window); }

    /// Shows the popup without animation.
    void showAtOnce() const
    {
        popup->setEffectDuration(0);
        popup->showPopup();
    }

    /// Starts a show animation that does not end by itself.
    void startShowing() const
    {
        popup->setEffectDuration(kLong);
        popup->showPopup();
    }

    [[nodiscard]] QPoint basePlace() const { return base->mapToGlobal(QPoint()); }
    [[nodiscard]] int forcedClosed() const { return priv->property("forcedClosed").toInt(); }
    void hideTemporarily(bool force) const
    {
        QMetaObject::invokeMethod(priv, "temporarilyHiddenOn", Q_ARG(bool, force));
    }
    void call(const char *slot) const { QMetaObject::invokeMethod(priv, slot); }

    QWidget window;
    QWidget *base = nullptr;
    QLineEdit *edit = nullptr;
    DrivenPopupWidget *popup = nullptr;
    DrivenPopupWidgetPrivate *priv = nullptr;
};

void send(QObject *receiver, QEvent::Type type)
{
    QEvent event(type);
    QCoreApplication::sendEvent(receiver, &event);
}

/// Keys for whatever has the focus in @p window.
void type(const QWidget &window, const QByteArray &keys)
{
    for (const char key : keys) {
        QTest::keyClick(window.windowHandle(), key);
    }
}

void sendWindowStateChange(QWidget *widget)
{
    QWindowStateChangeEvent event(Qt::WindowNoState);
    QCoreApplication::sendEvent(widget, &event);
}

} // namespace

class tst_DrivenPopupWidget : public ZelTest
{
    Q_OBJECT

private slots:
    void defaults();
    void propertiesStandInOrder();
    void privateSlotsStandInOrder();
    void aDelayOfZeroIsIgnored();

    void isActiveWhileShown();
    void showsAndHidesByFlag();
    void hidesAfterTheDelay();
    void showingAgainRestartsTheDelay();
    void hideStopsTheDelay();
    void theLongestDelayIsBounded();

    void mousePressHidesWithAnimation();
    void mousePressInAnotherWindowHides();
    void mousePressWhileShowingHidesAtOnce();
    void otherEventsLeaveItShown();
    void followsItsBaseWidget();
    void followsAMovedBaseWindow();
    void movedWindowHidesAtOnce_data();
    void movedWindowHidesAtOnce();
    void moveOfAChildOrToolLeavesItShown();
    void resizedAncestorReplacesIt();
    void resizedBaseWidgetReplacesIt();
    void resizeElsewhereLeavesItInPlace();

    void anotherWindowHidesItAtOnce();
    void aDrivenPopupMayBeActive();
    void activePopupGivesTheActivationBack();
    void windowStateChange_data();
    void windowStateChange();
    void windowStateChangeOfItsOwnPeopleLeavesItShown();
    void withoutABaseWidgetUpdateVisibilityHidesAtOnce();
    void applicationDeactivationHides();
    void applicationDeactivationWithAnActiveWindowLeavesItShown();
    void applicationObjectsEventIsNotWatched();
    void softwareInputPanelActivatesItsWindow();

    void forcedHideIsMarked();
    void forcedHideWhileShowingIsMarked();
    void temporaryHideWithoutArgumentIsNotForced();
    void temporaryHideNeedsAnActivePopup();
    void temporaryHideLeavesAnExplicitlyHiddenPopup();
    void temporaryHideLeavesAHidingPopup();
    void hidePopupMarksTheWidget();
    void comesBackByShowPopup();
    void comesBackAtOnce();
    void comesBackAtOnceAndOpens();

    void watchesANewBaseWidget();
    void anInactivePopupDoesNotWatchANewBaseWidget();
    void watchesNothingWhenHidden();
    void outlivesItsBaseWidget();
    void diesWhileActive();
    void typingGoesOn();
};

void tst_DrivenPopupWidget::defaults()
{
    const DrivenPopupWidget popup;
    QCOMPARE(popup.hideDelayMsec(), 7000U);
    QCOMPARE(popup.isActive(), false);
    const auto *priv = popup.findChild<DrivenPopupWidgetPrivate *>();
    QCOMPARE(priv->parent(), &popup);
    QCOMPARE(priv->property("forcedClosed"), QVariant(0));
}

void tst_DrivenPopupWidget::propertiesStandInOrder()
{
    const QMetaObject &meta = DrivenPopupWidget::staticMetaObject;
    QCOMPARE(meta.propertyCount() - meta.propertyOffset(), 2);
    const QMetaProperty active = meta.property(meta.propertyOffset());
    QCOMPARE(active.name(), "active");
    QCOMPARE(active.isWritable(), false);
    const QMetaProperty delay = meta.property(meta.propertyOffset() + 1);
    QCOMPARE(delay.name(), "hideDelayMsec");
    DrivenPopupWidget popup;
    QVERIFY(delay.write(&popup, 1234U));
    QCOMPARE(popup.hideDelayMsec(), 1234U);
}

void tst_DrivenPopupWidget::privateSlotsStandInOrder()
{
    QStringList names;
    const QMetaObject &meta = DrivenPopupWidgetPrivate::staticMetaObject;
    for (int i = meta.methodOffset(); i < meta.methodCount(); ++i) {
        names.append(QString::fromLatin1(meta.method(i).methodSignature()));
    }
    const QStringList expected{
        QStringLiteral("temporarilyHiddenOn(bool)"), QStringLiteral("temporarilyHiddenOn()"),
        QStringLiteral("temporarilyHiddenOff()"), QStringLiteral("updateVisibility()"),
        QStringLiteral("onApplicationDeactivate()")};
    QCOMPARE(names, expected);
}

void tst_DrivenPopupWidget::aDelayOfZeroIsIgnored()
{
    DrivenPopupWidget popup;
    popup.setHideDelayMsec(0);
    QCOMPARE(popup.hideDelayMsec(), 7000U);
    QVERIFY(popup.setProperty("hideDelayMsec", 0U));
    QCOMPARE(popup.hideDelayMsec(), 7000U);
}

void tst_DrivenPopupWidget::isActiveWhileShown()
{
    Stage stage;
    QVERIFY(stage.isReady());
    stage.showAtOnce();
    QVERIFY(stage.popup->isVisible());
    QVERIFY(stage.popup->property("active").toBool());
    stage.popup->hidePopup();
    QVERIFY(stage.popup->isHidden());
    QVERIFY(!stage.popup->property("active").toBool());
}

void tst_DrivenPopupWidget::showsAndHidesByFlag()
{
    Stage stage;
    QVERIFY(stage.isReady());
    stage.popup->showPopup(true);
    QVERIFY(stage.popup->isActive());
    stage.popup->showPopup(false);
    QVERIFY(!stage.popup->isActive());
}

void tst_DrivenPopupWidget::hidesAfterTheDelay()
{
    Stage stage;
    QVERIFY(stage.isReady());
    stage.popup->setHideDelayMsec(60);
    stage.showAtOnce();
    stage.popup->setEffectDuration(20);
    QSignalSpy opened(stage.popup, &PopupWidget::popupOpened);
    QTRY_VERIFY(stage.popup->isHidden());
    QCOMPARE(opened.size(), 1);
    QCOMPARE(opened.at(0).at(0).toBool(), false);
    QVERIFY(!stage.popup->isActive());
}

void tst_DrivenPopupWidget::showingAgainRestartsTheDelay()
{
    Stage stage;
    QVERIFY(stage.isReady());
    stage.popup->setHideDelayMsec(50);
    stage.showAtOnce();
    stage.popup->setHideDelayMsec(kLong);
    stage.popup->showPopup();
    QTest::qWait(120); // Nothing to wait for: the first delay must not end the second show.
    QVERIFY(stage.popup->isVisible());
    QVERIFY(stage.popup->isActive());
}

void tst_DrivenPopupWidget::hideStopsTheDelay()
{
    Stage stage;
    QVERIFY(stage.isReady());
    stage.popup->setHideDelayMsec(50);
    stage.showAtOnce();
    stage.popup->hidePopup();
    for (const QTimer *timer : stage.priv->findChildren<QTimer *>()) {
        QVERIFY(!timer->isActive());
    }
}

void tst_DrivenPopupWidget::theLongestDelayIsBounded()
{
    Stage stage;
    QVERIFY(stage.isReady());
    stage.popup->setHideDelayMsec(4294967295U);
    stage.showAtOnce();
    QCOMPARE(stage.popup->hideDelayMsec(), 4294967295U);
    QCoreApplication::processEvents();
    QVERIFY(stage.popup->isVisible());
}

void tst_DrivenPopupWidget::mousePressHidesWithAnimation()
{
    Stage stage;
    QVERIFY(stage.isReady());
    stage.showAtOnce();
    stage.popup->setEffectDuration(40);
    QSignalSpy opened(stage.popup, &PopupWidget::popupOpened);
    QTest::mousePress(stage.edit, Qt::LeftButton);
    QVERIFY(stage.popup->isVisible());
    QVERIFY(!stage.popup->isActive());
    QTRY_VERIFY(stage.popup->isHidden());
    QCOMPARE(opened.size(), 1);
    QCOMPARE(opened.at(0).at(0).toBool(), false);
    QCOMPARE(stage.forcedClosed(), 1);
    QTest::mouseRelease(stage.edit, Qt::LeftButton);
}

void tst_DrivenPopupWidget::mousePressInAnotherWindowHides()
{
    Stage stage;
    QVERIFY(stage.isReady());
    QWidget other(nullptr, Qt::Tool);
    other.setAttribute(Qt::WA_ShowWithoutActivating);
    other.setGeometry(700, 150, 100, 100);
    other.show();
    QVERIFY(QTest::qWaitForWindowExposed(&other));
    stage.showAtOnce();
    QTest::mouseClick(&other, Qt::RightButton);
    QVERIFY(stage.popup->isHidden());
}

void tst_DrivenPopupWidget::mousePressWhileShowingHidesAtOnce()
{
    Stage stage;
    QVERIFY(stage.isReady());
    stage.startShowing();
    QVERIFY(stage.popup->isVisible());
    QSignalSpy opened(stage.popup, &PopupWidget::popupOpened);
    QTest::mouseClick(stage.edit, Qt::LeftButton);
    QVERIFY(stage.popup->isHidden());
    QVERIFY(!stage.popup->isActive());
    QVERIFY(opened.isEmpty());
    QCOMPARE(stage.forcedClosed(), 2);
}

void tst_DrivenPopupWidget::otherEventsLeaveItShown()
{
    Stage stage;
    QVERIFY(stage.isReady());
    stage.showAtOnce();
    QTest::keyClicks(stage.edit, QStringLiteral("typing"));
    QTest::mouseMove(stage.edit);
    QTest::mouseRelease(stage.edit, Qt::LeftButton);
    QVERIFY(stage.popup->isVisible());
    QVERIFY(stage.popup->isActive());
}

void tst_DrivenPopupWidget::followsItsBaseWidget()
{
    Stage stage;
    QVERIFY(stage.isReady());
    stage.showAtOnce();
    QCOMPARE(stage.popup->pos(), stage.basePlace());
    stage.base->move(60, 70);
    QCOMPARE(stage.basePlace(), stage.window.mapToGlobal(QPoint(60, 70)));
    QCOMPARE(stage.popup->pos(), stage.basePlace());
    QVERIFY(stage.popup->isVisible());
}

void tst_DrivenPopupWidget::followsAMovedBaseWindow()
{
    Stage stage;
    QVERIFY(stage.isReady());
    stage.popup->setBaseWidget(&stage.window);
    stage.showAtOnce();
    const QPoint before = stage.popup->pos();
    stage.window.move(stage.window.pos() + QPoint(40, 30));
    QTRY_COMPARE(stage.popup->pos(), stage.window.mapToGlobal(QPoint()));
    QVERIFY(stage.popup->pos() != before);
    QVERIFY(stage.popup->isVisible());
}

void tst_DrivenPopupWidget::movedWindowHidesAtOnce_data()
{
    QTest::addColumn<int>("windowType");
    QTest::newRow("window") << int(Qt::Window);
    QTest::newRow("dialog") << int(Qt::Dialog);
}

void tst_DrivenPopupWidget::movedWindowHidesAtOnce()
{
    QFETCH(int, windowType);

    Stage stage;
    QVERIFY(stage.isReady());
    QWidget other(nullptr, Qt::WindowFlags(windowType));
    stage.showAtOnce();
    stage.popup->setEffectDuration(kLong);
    QSignalSpy opened(stage.popup, &PopupWidget::popupOpened);
    send(&other, QEvent::Move);
    QVERIFY(stage.popup->isHidden());
    QVERIFY(!stage.popup->isActive());
    QVERIFY(opened.isEmpty());
}

void tst_DrivenPopupWidget::moveOfAChildOrToolLeavesItShown()
{
    Stage stage;
    QVERIFY(stage.isReady());
    QWidget tool(nullptr, Qt::Tool);
    stage.showAtOnce();
    stage.edit->move(12, 242);
    send(&tool, QEvent::Move);
    QVERIFY(stage.popup->isVisible());
}

void tst_DrivenPopupWidget::resizedAncestorReplacesIt()
{
    Stage stage;
    QVERIFY(stage.isReady());
    stage.showAtOnce();
    stage.popup->move(0, 0);
    send(&stage.window, QEvent::Resize);
    QCOMPARE(stage.popup->pos(), stage.basePlace());
    QVERIFY(stage.popup->isVisible());
}

void tst_DrivenPopupWidget::resizedBaseWidgetReplacesIt()
{
    Stage stage;
    QVERIFY(stage.isReady());
    stage.popup->setAlignment(Qt::AlignRight | Qt::AlignBottom);
    stage.showAtOnce();
    stage.base->resize(340, 210);
    QCOMPARE(stage.popup->pos(), stage.basePlace() + QPoint(340, 210));
}

void tst_DrivenPopupWidget::resizeElsewhereLeavesItInPlace()
{
    Stage stage;
    QVERIFY(stage.isReady());
    stage.showAtOnce();
    stage.popup->move(5, 5);
    send(stage.edit, QEvent::Resize);
    QCOMPARE(stage.popup->pos(), QPoint(5, 5));
}

void tst_DrivenPopupWidget::anotherWindowHidesItAtOnce()
{
    Stage stage;
    QVERIFY(stage.isReady());
    QWidget other;
    other.setGeometry(700, 150, 100, 100);
    other.show();
    QVERIFY(QTest::qWaitForWindowExposed(&other));
    QVERIFY(activate(stage.window));
    stage.showAtOnce();
    stage.popup->setEffectDuration(kLong);
    QVERIFY(activate(other));
    QVERIFY(stage.popup->isHidden());
    QVERIFY(!stage.popup->isActive());
}

void tst_DrivenPopupWidget::aDrivenPopupMayBeActive()
{
    Stage stage;
    QVERIFY(stage.isReady());
    stage.showAtOnce();
    QVERIFY(activate(*stage.popup));
    stage.call("updateVisibility");
    QVERIFY(stage.popup->isVisible());
    QVERIFY(stage.popup->isActive());
}

void tst_DrivenPopupWidget::activePopupGivesTheActivationBack()
{
    Stage stage;
    QVERIFY(stage.isReady());
    stage.showAtOnce();
    QVERIFY(activate(*stage.popup));
    // As when the user clicks into the popup: the window manager has time to settle.
    stage.popup->setEffectDuration(150);
    QTest::mouseClick(stage.popup, Qt::LeftButton);
    QTRY_VERIFY(stage.popup->isHidden());
    QTRY_COMPARE(QApplication::activeWindow(), &stage.window);
}

void tst_DrivenPopupWidget::windowStateChange_data()
{
    QTest::addColumn<int>("windowType");
    QTest::addColumn<bool>("isModal");
    QTest::addColumn<bool>("hides");

    QTest::newRow("window") << int(Qt::Window) << false << true;
    QTest::newRow("modal dialog") << int(Qt::Dialog) << true << true;
    QTest::newRow("other dialog") << int(Qt::Dialog) << false << false;
    QTest::newRow("tool tip") << int(Qt::ToolTip) << false << true;
    QTest::newRow("popup") << int(Qt::Popup) << false << true;
    QTest::newRow("tool window") << int(Qt::Tool) << false << false;
    QTest::newRow("child widget") << int(Qt::Widget) << false << false;
}

void tst_DrivenPopupWidget::windowStateChange()
{
    QFETCH(int, windowType);
    QFETCH(bool, isModal);
    QFETCH(bool, hides);

    Stage stage;
    QVERIFY(stage.isReady());
    QWidget parent;
    QVERIFY(showActive(parent));
    stage.showAtOnce();
    QVERIFY(stage.popup->isVisible());
    QWidget other(&parent, Qt::WindowFlags(windowType));
    other.setWindowModality(isModal ? Qt::ApplicationModal : Qt::NonModal);
    sendWindowStateChange(&other);
    QCOMPARE(stage.popup->isHidden(), hides);
    QCOMPARE(stage.popup->isActive(), !hides);
}

void tst_DrivenPopupWidget::windowStateChangeOfItsOwnPeopleLeavesItShown()
{
    Stage stage;
    QVERIFY(stage.isReady());
    QWidget other;
    QVERIFY(showActive(other));
    stage.showAtOnce();
    sendWindowStateChange(&stage.window);
    sendWindowStateChange(stage.popup);
    DrivenPopupWidget anotherPopup;
    anotherPopup.setWindowFlags(Qt::Popup);
    sendWindowStateChange(&anotherPopup);
    QVERIFY(stage.popup->isVisible());
}

void tst_DrivenPopupWidget::withoutABaseWidgetUpdateVisibilityHidesAtOnce()
{
    Stage stage;
    QVERIFY(stage.isReady());
    stage.popup->setBaseWidget(nullptr);
    stage.showAtOnce();
    stage.popup->setEffectDuration(kLong);
    stage.call("updateVisibility");
    QVERIFY(stage.popup->isHidden());
    QVERIFY(!stage.popup->isActive());
}

void tst_DrivenPopupWidget::applicationDeactivationHides()
{
    Stage stage;
    QVERIFY(stage.isReady());
    QApplication::setActiveWindow(nullptr);
    stage.showAtOnce();
    QSignalSpy opened(stage.popup, &PopupWidget::popupOpened);
    send(stage.edit, QEvent::ApplicationDeactivate);
    QVERIFY(stage.popup->isVisible());
    QTRY_VERIFY(stage.popup->isHidden());
    QCOMPARE(opened.size(), 1);
    QCOMPARE(opened.at(0).at(0).toBool(), false);
}

void tst_DrivenPopupWidget::applicationDeactivationWithAnActiveWindowLeavesItShown()
{
    Stage stage;
    QVERIFY(stage.isReady());
    stage.showAtOnce();
    send(stage.edit, QEvent::ApplicationDeactivate);
    QCoreApplication::processEvents();
    QVERIFY(stage.popup->isVisible());
    stage.call("onApplicationDeactivate");
    QVERIFY(stage.popup->isVisible());
}

void tst_DrivenPopupWidget::applicationObjectsEventIsNotWatched()
{
    Stage stage;
    QVERIFY(stage.isReady());
    QApplication::setActiveWindow(nullptr);
    stage.showAtOnce();
    QObject object;
    send(&object, QEvent::ApplicationDeactivate);
    send(&object, QEvent::MouseButtonPress);
    QCoreApplication::processEvents();
    QVERIFY(stage.popup->isVisible());
}

void tst_DrivenPopupWidget::softwareInputPanelActivatesItsWindow()
{
    Stage stage;
    QVERIFY(stage.isReady());
    stage.showAtOnce();
    DrivenPopupWidget activeOne;
    activeOne.setGeometry(700, 150, 100, 100);
    activeOne.show();
    QVERIFY(QTest::qWaitForWindowExposed(&activeOne));
    QVERIFY(activate(activeOne));
    QVERIFY(stage.popup->isVisible());
    const auto request = [&stage] {
        // By hand: the toolkit itself keeps this event from the filters of the application.
        QEvent event(QEvent::RequestSoftwareInputPanel);
        stage.priv->eventFilter(stage.edit, &event);
    };
    QVERIFY(becomesActive(stage.window, request));
}

void tst_DrivenPopupWidget::forcedHideIsMarked()
{
    Stage stage;
    QVERIFY(stage.isReady());
    stage.showAtOnce();
    stage.popup->setEffectDuration(kLong);
    QSignalSpy opened(stage.popup, &PopupWidget::popupOpened);
    stage.hideTemporarily(true);
    QVERIFY(stage.popup->isHidden());
    QVERIFY(!stage.popup->isActive());
    QCOMPARE(stage.forcedClosed(), 1);
    QVERIFY(opened.isEmpty());
}

void tst_DrivenPopupWidget::forcedHideWhileShowingIsMarked()
{
    Stage stage;
    QVERIFY(stage.isReady());
    stage.startShowing();
    stage.hideTemporarily(false);
    QVERIFY(stage.popup->isHidden());
    QVERIFY(!stage.popup->isActive());
    QCOMPARE(stage.forcedClosed(), 2);
    QCOMPARE(stage.priv->fadeAnimation->state(), QAbstractAnimation::Stopped);
}

void tst_DrivenPopupWidget::temporaryHideWithoutArgumentIsNotForced()
{
    Stage stage;
    QVERIFY(stage.isReady());
    stage.showAtOnce();
    stage.popup->setEffectDuration(kLong);
    stage.call("temporarilyHiddenOn");
    QVERIFY(stage.popup->isVisible());
    QCOMPARE(stage.priv->fadeAnimation->state(), QAbstractAnimation::Running);
    QCOMPARE(stage.priv->fadeAnimation->direction(), QAbstractAnimation::Backward);
    QCOMPARE(stage.forcedClosed(), 1);
}

void tst_DrivenPopupWidget::temporaryHideNeedsAnActivePopup()
{
    Stage stage;
    QVERIFY(stage.isReady());
    stage.popup->show();
    stage.hideTemporarily(true);
    QVERIFY(stage.popup->isVisible());
    QCOMPARE(stage.forcedClosed(), 0);
}

void tst_DrivenPopupWidget::temporaryHideLeavesAnExplicitlyHiddenPopup()
{
    Stage stage;
    QVERIFY(stage.isReady());
    stage.startShowing();
    stage.popup->hide();
    stage.hideTemporarily(true);
    QVERIFY(stage.popup->isActive());
    QCOMPARE(stage.forcedClosed(), 0);
    QCOMPARE(stage.priv->fadeAnimation->state(), QAbstractAnimation::Running);
}

void tst_DrivenPopupWidget::temporaryHideLeavesAHidingPopup()
{
    Stage stage;
    QVERIFY(stage.isReady());
    stage.showAtOnce();
    stage.popup->setEffectDuration(kLong);
    // The hide of the base class leaves the popup active.
    stage.popup->PopupWidget::hidePopup();
    stage.hideTemporarily(true);
    QVERIFY(stage.popup->isVisible());
    QCOMPARE(stage.forcedClosed(), 0);
}

void tst_DrivenPopupWidget::hidePopupMarksTheWidget()
{
    Stage stage;
    QVERIFY(stage.isReady());
    stage.showAtOnce();
    stage.hideTemporarily(true);
    QVERIFY(!stage.popup->property("forcedClosed").isValid());
    stage.popup->hidePopup();
    QCOMPARE(stage.popup->property("forcedClosed"), QVariant(0));
    QCOMPARE(stage.forcedClosed(), 1);
}

void tst_DrivenPopupWidget::comesBackByShowPopup()
{
    Stage stage;
    QVERIFY(stage.isReady());
    stage.call("temporarilyHiddenOff");
    QVERIFY(stage.popup->isVisible());
    QVERIFY(stage.popup->isActive());
}

void tst_DrivenPopupWidget::comesBackAtOnce()
{
    Stage stage;
    QVERIFY(stage.isReady());
    stage.showAtOnce();
    stage.hideTemporarily(true);
    stage.popup->setEffectDuration(kLong);
    QSignalSpy opened(stage.popup, &PopupWidget::popupOpened);
    stage.call("temporarilyHiddenOff");
    QVERIFY(stage.popup->isVisible());
    QVERIFY(opened.isEmpty());
    QCOMPARE(stage.forcedClosed(), 0);
}

void tst_DrivenPopupWidget::comesBackAtOnceAndOpens()
{
    Stage stage;
    QVERIFY(stage.isReady());
    stage.startShowing();
    stage.hideTemporarily(true);
    QSignalSpy opened(stage.popup, &PopupWidget::popupOpened);
    stage.call("temporarilyHiddenOff");
    QVERIFY(stage.popup->isVisible());
    QCOMPARE(opened.size(), 1);
    QCOMPARE(opened.at(0).at(0).toBool(), true);
    QCOMPARE(stage.forcedClosed(), 0);
}

void tst_DrivenPopupWidget::watchesANewBaseWidget()
{
    Stage stage;
    QVERIFY(stage.isReady());
    stage.showAtOnce();
    stage.popup->setBaseWidget(stage.edit);
    const QPoint before = stage.popup->pos();
    stage.base->move(50, 50);
    QCOMPARE(stage.popup->pos(), before);
    stage.edit->move(20, 250);
    QCOMPARE(stage.popup->pos(), stage.edit->mapToGlobal(QPoint()));
}

void tst_DrivenPopupWidget::anInactivePopupDoesNotWatchANewBaseWidget()
{
    Stage stage;
    QVERIFY(stage.isReady());
    const QPoint before = stage.popup->pos();
    stage.popup->setBaseWidget(stage.edit);
    stage.edit->move(20, 250);
    QCOMPARE(stage.popup->pos(), before);
}

void tst_DrivenPopupWidget::watchesNothingWhenHidden()
{
    Stage stage;
    QVERIFY(stage.isReady());
    for (const bool isForced : {false, true}) {
        stage.showAtOnce();
        const QPoint place = stage.popup->pos();
        if (isForced) {
            stage.hideTemporarily(true);
        } else {
            stage.popup->hidePopup();
        }
        stage.base->move(stage.base->pos() + QPoint(5, 5));
        QCOMPARE(stage.popup->pos(), place);
    }
}

void tst_DrivenPopupWidget::outlivesItsBaseWidget()
{
    Stage stage;
    QVERIFY(stage.isReady());
    auto base = std::make_unique<QWidget>(&stage.window);
    base->show();
    stage.popup->setBaseWidget(base.get());
    stage.popup->setHideDelayMsec(50);
    stage.showAtOnce();
    base.reset();
    QCOMPARE(stage.popup->baseWidget(), nullptr);
    QVERIFY(stage.popup->isVisible());
    QTRY_VERIFY(stage.popup->isHidden());
    QVERIFY(!stage.popup->isActive());
}

void tst_DrivenPopupWidget::diesWhileActive()
{
    Stage stage;
    QVERIFY(stage.isReady());
    stage.popup->setHideDelayMsec(1);
    stage.startShowing();
    const QPointer<DrivenPopupWidget> popup(stage.popup);
    send(stage.edit, QEvent::ApplicationDeactivate);
    std::unique_ptr<DrivenPopupWidget>(stage.popup).reset();
    QVERIFY(popup.isNull());
    stage.base->move(40, 40);
    QTest::mouseClick(stage.edit, Qt::LeftButton);
    QCoreApplication::processEvents();
    QVERIFY(stage.window.isVisible());
}

void tst_DrivenPopupWidget::typingGoesOn()
{
    Stage stage;
    QVERIFY(stage.isReady());
    QTRY_VERIFY(stage.edit->hasFocus());
    stage.popup->setEffectDuration(60);
    QSignalSpy opened(stage.popup, &PopupWidget::popupOpened);
    stage.popup->showPopup();
    type(stage.window, "while ");
    QVERIFY(QTest::qWaitForWindowExposed(stage.popup));
    QTRY_COMPARE(opened.size(), 1);
    type(stage.window, "shown ");
    stage.popup->hidePopup();
    QTRY_COMPARE(opened.size(), 2);
    type(stage.window, "hidden");
    QCOMPARE(stage.edit->text(), QStringLiteral("while shown hidden"));
    QCOMPARE(QApplication::activeWindow(), &stage.window);
    QVERIFY(stage.edit->hasFocus());
}

ZEL_TEST_MAIN(tst_DrivenPopupWidget)
#include "tst_DrivenPopupWidget.moc"
