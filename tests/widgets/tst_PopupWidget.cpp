#include "widgets/PopupWidget.h"

#include "tests/support/ZelTest.h"
#include "widgets/PopupWidget_p.h"

#include <QApplication>
#include <QImage>
#include <QLabel>
#include <QLinearGradient>
#include <QMenu>
#include <QMetaEnum>
#include <QMoveEvent>
#include <QPainter>
#include <QPropertyAnimation>
#include <QSignalSpy>
#include <QVBoxLayout>
#include <QWindow>
#include <qtestspontaneevent.h>

#include <memory>

namespace {

constexpr uint kShort = 40;

/// Long enough that a test is sure to meet the animation running.
constexpr uint kLong = 60000;

constexpr Qt::Alignment kNoAlignment;

/// A visible window with a popup of fixed content over it.
struct Stage
{
    Stage()
    {
        window.setGeometry(100, 50, 400, 300);
        window.show();
        popup = new PopupWidget(&window);
        auto *layout = new QVBoxLayout(popup);
        layout->setSizeConstraint(QLayout::SetFixedSize);
        layout->setContentsMargins(QMargins());
        auto *content = new QWidget(popup);
        content->setFixedSize(120, 20);
        layout->addWidget(content);
        popup->setAlignment(Qt::AlignLeft | Qt::AlignBottom);
        popup->setEffectDuration(kShort);
    }

    [[nodiscard]] PopupWidgetPrivate *priv() const
    {
        return popup->findChild<PopupWidgetPrivate *>();
    }
    [[nodiscard]] QLabel *effectLabel() const { return priv()->effectLabel; }

    QWidget window;
    PopupWidget *popup = nullptr;
};

QStringList ownSlots(const QMetaObject &meta)
{
    QStringList names;
    for (int i = meta.methodOffset(); i < meta.methodCount(); ++i) {
        if (meta.method(i).methodType() == QMetaMethod::Slot) {
            names.append(QString::fromLatin1(meta.method(i).methodSignature()));
        }
    }
    return names;
}

QStringList ownProperties(const QMetaObject &meta)
{
    QStringList names;
    for (int i = meta.propertyOffset(); i < meta.propertyCount(); ++i) {
        names.append(QString::fromLatin1(meta.property(i).name()));
    }
    return names;
}

/// What a window manager does that puts @p popup elsewhere.
void moveFromOutside(PopupWidget &popup, const QPoint &place)
{
    QMoveEvent event(place, popup.pos());
    popup.move(place);
    QSpontaneKeyEvent::setSpontaneous(&event);
    qApp->notify(&popup, &event);
}

/// The colour that @p popup paints into a transparent picture.
QColor paintedColor(PopupWidget &popup)
{
    QImage image(popup.size(), QImage::Format_ARGB32);
    image.fill(Qt::transparent);
    popup.render(&image, QPoint(), QRegion(), QWidget::RenderFlags());
    return image.pixelColor(image.rect().center());
}

} // namespace

Q_DECLARE_METATYPE(PopupWidget::VerticalDirection)
Q_DECLARE_METATYPE(PopupWidget::AnimationEffect)

class tst_PopupWidget : public ZelTest
{
    Q_OBJECT

private slots:
    void startsHidden();
    void enumerationValues();
    void propertiesStandInOrder();
    void propertyDefaults_data();
    void propertyDefaults();
    void propertiesCanBeSetByName_data();
    void propertiesCanBeSetByName();
    void slotsStandInOrder();
    void settingsReachBothAnimations();
    void animationsRunFromNothingToAll();
    void longestDurationIsBounded();

    void placement_data();
    void placement();
    void placedAgainstAWindow();
    void placedAgainstAChildOfAWindow();
    void placedByItsSizeHintBeforeItsFirstShow();
    void keepsItsPlaceWithoutABaseWidget();
    void collapsed_data();
    void collapsed();

    void comesAndGoes_data();
    void comesAndGoes();
    void withoutDurationItEndsAtOnce_data();
    void withoutDurationItEndsAtOnce();
    void fadeIsTranslucentOnlyWhileItRuns();
    void translucentPopupStaysTranslucent();
    void scrollSlidesASnapshotIn();
    void scrollSlidesASnapshotOut();
    void snapshotAlignment_data();
    void snapshotAlignment();
    void snapshotKeepsTransparency();
    void widgetRectDrivesTheEffectLabel();
    void fadeEffectShowsNothingUntilItsEnd();
    void turnsAroundWhileShowing_data();
    void turnsAroundWhileShowing();
    void turnsAroundWhileHiding_data();
    void turnsAroundWhileHiding();
    void pausedAnimationResumes();
    void changedEffectEndsTheRunningOne_data();
    void changedEffectEndsTheRunningOne();
    void endsWhereItsBaseWidgetIs();

    void returnsOnceWhenTheWindowManagerMovesIt();
    void doesNothingWhenShown();
    void doesNothingOverAHiddenBaseWidget();
    void hideOfAHiddenPopupDoesNothing();
    void showsAndHidesByFlag();
    void closesAMenuOfItsOwn();
    void leavesAnotherMenuOpen();

    void forgetsADestroyedBaseWidget();
    void forgetsAnEarlierBaseWidget();
    void diesWithItsBaseWidget();
    void diesWhileItsAnimationRuns();

    void backgroundFades_data();
    void backgroundFades();
    void gradientFades();
    void paintsItsFrame();
};

void tst_PopupWidget::startsHidden()
{
    QWidget window;
    const PopupWidget popup(&window);
    QVERIFY(popup.isHidden());
    QVERIFY(popup.isWindow());
    QCOMPARE(int(popup.windowFlags()), 0x80b);
    QCOMPARE(popup.parentWidget(), &window);
    QCOMPARE(popup.baseWidget(), &window);
    const auto *label = popup.findChild<QLabel *>();
    QVERIFY(label->isHidden());
    QCOMPARE(int(label->windowFlags()), 0x80d);
    QCOMPARE(popup.findChild<PopupWidgetPrivate *>()->parent(), &popup);
}

void tst_PopupWidget::enumerationValues()
{
    const auto effects = QMetaEnum::fromType<PopupWidget::AnimationEffect>();
    QCOMPARE(effects.keyCount(), 3);
    QCOMPARE(effects.keyToValue("WindowOpacityFadeEffect"), 0);
    QCOMPARE(effects.keyToValue("ScrollEffect"), 1);
    QCOMPARE(effects.keyToValue("FadeEffect"), 2);
    const auto directions = QMetaEnum::fromType<PopupWidget::VerticalDirection>();
    QCOMPARE(directions.keyCount(), 2);
    QCOMPARE(directions.keyToValue("TopToBottom"), 0);
    QCOMPARE(directions.keyToValue("BottomToTop"), 1);
}

void tst_PopupWidget::propertiesStandInOrder()
{
    const QStringList expected{
        QStringLiteral("animationEffect"),     QStringLiteral("effectDuration"),
        QStringLiteral("easingCurve"),         QStringLiteral("alignment"),
        QStringLiteral("orientation"),         QStringLiteral("verticalDirection"),
        QStringLiteral("horizontalDirection"), QStringLiteral("effectAlpha"),
        QStringLiteral("effectGeometry")};
    QCOMPARE(ownProperties(PopupWidget::staticMetaObject), expected);
}

void tst_PopupWidget::propertyDefaults_data()
{
    QTest::addColumn<QByteArray>("name");
    QTest::addColumn<QVariant>("value");

    const auto row = [](const char *name, const QVariant &value) {
        QTest::newRow(name) << QByteArray(name) << value;
    };
    row("animationEffect", 0);
    row("effectDuration", 300U);
    row("alignment", 72);
    row("orientation", int(Qt::Vertical));
    row("verticalDirection", 0);
    row("horizontalDirection", int(Qt::LeftToRight));
    row("effectAlpha", 0.7);
}

void tst_PopupWidget::propertyDefaults()
{
    QFETCH(QByteArray, name);
    QFETCH(QVariant, value);

    const PopupWidget popup;
    const QVariant actual = popup.property(name.constData());
    QVERIFY(actual.isValid());
    if (value.type() == QVariant::Int) {
        QCOMPARE(actual.toInt(), value.toInt());
    } else {
        QCOMPARE(actual, value);
    }
}

void tst_PopupWidget::propertiesCanBeSetByName_data()
{
    QTest::addColumn<QByteArray>("name");
    QTest::addColumn<QVariant>("value");

    const auto row = [](const char *name, const QVariant &value) {
        QTest::newRow(name) << QByteArray(name) << value;
    };
    row("animationEffect", 1);
    row("animationEffect", QStringLiteral("ScrollEffect"));
    row("effectDuration", 25U);
    row("easingCurve", QEasingCurve(QEasingCurve::InBack));
    row("alignment", 196);
    row("orientation", int(Qt::Horizontal));
    row("verticalDirection", QStringLiteral("BottomToTop"));
    row("horizontalDirection", int(Qt::RightToLeft));
    row("effectAlpha", 0.25);
    row("effectGeometry", QRect(30, 40, 50, 60));
}

void tst_PopupWidget::propertiesCanBeSetByName()
{
    QFETCH(QByteArray, name);
    QFETCH(QVariant, value);

    PopupWidget popup;
    QVERIFY(popup.setProperty(name.constData(), value));
    const QVariant actual = popup.property(name.constData());
    if (value.type() == QVariant::String) {
        QCOMPARE(actual.toInt(), 1);
    } else if (value.type() == QVariant::Int) {
        QCOMPARE(actual.toInt(), value.toInt());
    } else {
        QCOMPARE(actual, value);
    }
}

void tst_PopupWidget::slotsStandInOrder()
{
    const QStringList expected{QStringLiteral("hidePopup()"),
                               QStringLiteral("showPopup()"),
                               QStringLiteral("showPopup(bool)"),
                               QStringLiteral("setEffectAlpha(double)"),
                               QStringLiteral("setEffectGeometry(QRect)"),
                               QStringLiteral("onEffectFinished()"),
                               QStringLiteral("onBaseWidgetDestroyed()")};
    QCOMPARE(ownSlots(PopupWidget::staticMetaObject), expected);
}

void tst_PopupWidget::settingsReachBothAnimations()
{
    PopupWidget popup;
    const auto animations = popup.findChildren<QPropertyAnimation *>();
    QCOMPARE(animations.size(), 2);
    for (const QPropertyAnimation *animation : animations) {
        QCOMPARE(animation->targetObject(), &popup);
        QCOMPARE(animation->parent(), &popup);
        QCOMPARE(animation->duration(), 300);
        QCOMPARE(int(animation->easingCurve().type()), 6);
    }
    QCOMPARE(popup.easingCurve().type(), QEasingCurve::OutCubic);
    popup.setEffectDuration(120);
    popup.setEasingCurve(QEasingCurve::Linear);
    for (const QPropertyAnimation *animation : animations) {
        QCOMPARE(animation->duration(), 120);
        QCOMPARE(animation->easingCurve().type(), QEasingCurve::Linear);
    }
}

void tst_PopupWidget::animationsRunFromNothingToAll()
{
    const PopupWidget popup;
    const auto *priv = popup.findChild<PopupWidgetPrivate *>();
    QCOMPARE(priv->fadeAnimation->propertyName(), QByteArrayLiteral("effectAlpha"));
    QCOMPARE(priv->fadeAnimation->startValue(), QVariant(0.0));
    QCOMPARE(priv->fadeAnimation->endValue(), QVariant(1.0));
    QCOMPARE(priv->scrollAnimation->propertyName(), QByteArrayLiteral("widgetRect"));
    QCOMPARE(PopupWidget::staticMetaObject.indexOfProperty("widgetRect"), -1);
}

void tst_PopupWidget::longestDurationIsBounded()
{
    PopupWidget popup;
    popup.setEffectDuration(4294967295U);
    QCOMPARE(popup.effectDuration(), 4294967295U);
    QCOMPARE(popup.findChild<QPropertyAnimation *>()->duration(), 2147483647);
}

void tst_PopupWidget::placement_data()
{
    QTest::addColumn<Qt::Alignment>("alignment");
    QTest::addColumn<Qt::Orientation>("orientation");
    QTest::addColumn<PopupWidget::VerticalDirection>("vertical");
    QTest::addColumn<Qt::LayoutDirection>("horizontal");
    QTest::addColumn<QRect>("expected");

    // The base widget spans 100..499 by 200..399, the popup is 60 by 30.
    const auto row = [](const char *name, Qt::Alignment alignment,
                        PopupWidget::VerticalDirection vertical, Qt::LayoutDirection horizontal,
                        const QRect &expected, Qt::Orientation orientation = Qt::Vertical) {
        QTest::newRow(name) << alignment << orientation << vertical << horizontal << expected;
    };
    constexpr auto kDown = PopupWidget::TopToBottom;
    constexpr auto kUp = PopupWidget::BottomToTop;
    constexpr auto kLtr = Qt::LeftToRight;
    constexpr auto kRtl = Qt::RightToLeft;

    row("none", kNoAlignment, kDown, kLtr, {0, 0, 60, 30});
    row("left", Qt::AlignLeft, kDown, kLtr, {100, 0, 60, 30});
    row("left, right-to-left", Qt::AlignLeft, kDown, kRtl, {40, 0, 60, 30});
    row("right", Qt::AlignRight, kDown, kLtr, {500, 0, 60, 30});
    row("right, right-to-left", Qt::AlignRight, kDown, kRtl, {440, 0, 60, 30});
    row("centre", Qt::AlignHCenter, kDown, kLtr, {269, 0, 60, 30});
    row("centre, right-to-left", Qt::AlignHCenter, kDown, kRtl, {269, 0, 60, 30});
    row("justify", Qt::AlignJustify, kDown, kLtr, {100, 0, 400, 30});
    row("justify, horizontal", Qt::AlignJustify, kDown, kLtr, {100, 0, 60, 30}, Qt::Horizontal);
    row("left before right", Qt::AlignLeft | Qt::AlignRight, kDown, kLtr, {100, 0, 60, 30});
    row("right before centre", Qt::AlignRight | Qt::AlignHCenter, kDown, kLtr, {500, 0, 60, 30});
    row("centre before justify", Qt::AlignHCenter | Qt::AlignJustify, kDown, kLtr,
        {99, 0, 400, 30});
    row("top", Qt::AlignTop, kDown, kLtr, {0, 200, 60, 30});
    row("top, upwards", Qt::AlignTop, kUp, kLtr, {0, 170, 60, 30});
    row("bottom", Qt::AlignBottom, kDown, kLtr, {0, 400, 60, 30});
    row("bottom, upwards", Qt::AlignBottom, kUp, kLtr, {0, 370, 60, 30});
    row("middle", Qt::AlignVCenter, kDown, kLtr, {0, 284, 60, 30});
    row("middle, upwards", Qt::AlignVCenter, kUp, kLtr, {0, 284, 60, 30});
    row("bottom before middle", Qt::AlignBottom | Qt::AlignVCenter, kUp, kLtr, {0, 370, 60, 30});
    row("top and bottom", Qt::AlignTop | Qt::AlignBottom, kDown, kLtr, {0, 200, 60, 200});
    row("top and bottom, upwards", Qt::AlignTop | Qt::AlignBottom, kUp, kLtr, {0, 0, 60, 200});
    row("default", Qt::AlignJustify | Qt::AlignBottom, kDown, kLtr, {100, 400, 400, 30});
    row("main window's message", Qt::Alignment(196), kUp, kLtr, {269, 370, 60, 30});
}

void tst_PopupWidget::placement()
{
    QFETCH(Qt::Alignment, alignment);
    QFETCH(Qt::Orientation, orientation);
    QFETCH(PopupWidget::VerticalDirection, vertical);
    QFETCH(Qt::LayoutDirection, horizontal);
    QFETCH(QRect, expected);

    PopupWidget popup;
    popup.setAlignment(alignment);
    popup.setOrientation(orientation);
    popup.setVerticalDirection(vertical);
    popup.setHorizontalDirection(horizontal);
    const auto *priv = popup.findChild<PopupWidgetPrivate *>();
    QCOMPARE(priv->placedAgainst(QRect(100, 200, 400, 200), QSize(60, 30)), expected);
}

void tst_PopupWidget::placedAgainstAWindow()
{
    Stage stage;
    stage.popup->showPopup();
    const QRect base(stage.window.mapToGlobal(QPoint()), stage.window.size());
    QCOMPARE(stage.popup->geometry(), QRect(base.left(), base.bottom() + 1, 120, 20));
}

void tst_PopupWidget::placedAgainstAChildOfAWindow()
{
    Stage stage;
    auto *child = new QWidget(new QWidget(&stage.window));
    child->parentWidget()->setGeometry(10, 20, 300, 200);
    child->setGeometry(5, 6, 100, 50);
    child->parentWidget()->show();
    stage.popup->setBaseWidget(child);
    stage.popup->showPopup();
    const QPoint corner = stage.window.mapToGlobal(QPoint(15, 26));
    QCOMPARE(stage.popup->geometry(), QRect(corner + QPoint(0, 50), QSize(120, 20)));
}

void tst_PopupWidget::placedByItsSizeHintBeforeItsFirstShow()
{
    QWidget window;
    window.setGeometry(100, 50, 400, 300);
    window.show();
    PopupWidget popup(&window);
    auto *layout = new QVBoxLayout(&popup);
    layout->setContentsMargins(QMargins());
    auto *content = new QWidget;
    content->setFixedSize(70, 25);
    layout->addWidget(content);
    popup.setAlignment(Qt::AlignLeft | Qt::AlignTop);
    popup.resize(300, 200);

    popup.showPopup();
    QCOMPARE(popup.size(), QSize(70, 25));
    popup.hide();
    popup.setMaximumSize(500, 500);
    content->setFixedSize(200, 100);
    popup.resize(300, 200);
    popup.showPopup();
    QCOMPARE(popup.size(), QSize(300, 200));
}

void tst_PopupWidget::keepsItsPlaceWithoutABaseWidget()
{
    PopupWidget popup;
    QCOMPARE(popup.baseWidget(), nullptr);
    popup.setGeometry(33, 44, 55, 66);
    popup.showPopup();
    QVERIFY(popup.isVisible());
    QCOMPARE(popup.geometry(), QRect(33, 44, 55, 66));
}

void tst_PopupWidget::collapsed_data()
{
    QTest::addColumn<Qt::Orientations>("orientation");
    QTest::addColumn<PopupWidget::VerticalDirection>("vertical");
    QTest::addColumn<Qt::LayoutDirection>("horizontal");
    QTest::addColumn<QRect>("expected");

    constexpr Qt::Orientations kBoth = Qt::Vertical | Qt::Horizontal;
    constexpr Qt::Orientations kVertical = Qt::Vertical;
    constexpr Qt::Orientations kHorizontal = Qt::Horizontal;
    constexpr auto kDown = PopupWidget::TopToBottom;
    constexpr auto kUp = PopupWidget::BottomToTop;
    QTest::newRow("down") << kVertical << kDown << Qt::LeftToRight << QRect(10, 20, 60, 0);
    QTest::newRow("up") << kVertical << kUp << Qt::LeftToRight << QRect(10, 49, 60, 0);
    QTest::newRow("vertical only, right-to-left")
        << kVertical << kDown << Qt::RightToLeft << QRect(10, 20, 60, 0);
    QTest::newRow("right") << kHorizontal << kUp << Qt::LeftToRight << QRect(10, 20, 0, 30);
    QTest::newRow("left") << kHorizontal << kUp << Qt::RightToLeft << QRect(69, 20, 0, 30);
    QTest::newRow("corner") << kBoth << kDown << Qt::LeftToRight << QRect(10, 20, 0, 0);
    QTest::newRow("opposite corner") << kBoth << kUp << Qt::RightToLeft << QRect(69, 49, 0, 0);
    QTest::newRow("neither") << Qt::Orientations() << kUp << Qt::RightToLeft
                             << QRect(10, 20, 60, 30);
}

void tst_PopupWidget::collapsed()
{
    QFETCH(Qt::Orientations, orientation);
    QFETCH(PopupWidget::VerticalDirection, vertical);
    QFETCH(Qt::LayoutDirection, horizontal);
    QFETCH(QRect, expected);

    PopupWidget popup;
    popup.setOrientation(orientation);
    popup.setVerticalDirection(vertical);
    popup.setHorizontalDirection(horizontal);
    QCOMPARE(popup.findChild<PopupWidgetPrivate *>()->collapsed(QRect(10, 20, 60, 30)), expected);
}

void tst_PopupWidget::comesAndGoes_data()
{
    QTest::addColumn<PopupWidget::AnimationEffect>("effect");
    QTest::newRow("window opacity fade") << PopupWidget::WindowOpacityFadeEffect;
    QTest::newRow("scroll") << PopupWidget::ScrollEffect;
    QTest::newRow("fade") << PopupWidget::FadeEffect;
}

void tst_PopupWidget::comesAndGoes()
{
    QFETCH(PopupWidget::AnimationEffect, effect);

    Stage stage;
    stage.popup->setAnimationEffect(effect);
    QSignalSpy opened(stage.popup, &PopupWidget::popupOpened);
    for (int round = 0; round < 2; ++round) {
        stage.popup->showPopup();
        QVERIFY(opened.isEmpty());
        QTRY_COMPARE(opened.size(), 1);
        QCOMPARE(opened.at(0).at(0).toBool(), true);
        QVERIFY(stage.popup->isVisible());
        QVERIFY(stage.effectLabel()->isHidden());
        QVERIFY(QTest::qWaitForWindowExposed(stage.popup));

        stage.popup->hidePopup();
        QTRY_COMPARE(opened.size(), 2);
        QCOMPARE(opened.at(1).at(0).toBool(), false);
        QVERIFY(stage.popup->isHidden());
        QVERIFY(stage.effectLabel()->isHidden());
        QTRY_VERIFY(!stage.popup->windowHandle()->isExposed());
        opened.clear();
    }
}

void tst_PopupWidget::withoutDurationItEndsAtOnce_data()
{
    comesAndGoes_data();
}

void tst_PopupWidget::withoutDurationItEndsAtOnce()
{
    QFETCH(PopupWidget::AnimationEffect, effect);

    Stage stage;
    stage.popup->setAnimationEffect(effect);
    stage.popup->setEffectDuration(0);
    stage.popup->showPopup();
    QVERIFY(stage.popup->isVisible());
    stage.popup->hidePopup();
    QVERIFY(stage.popup->isHidden());
    QVERIFY(stage.effectLabel()->isHidden());
}

void tst_PopupWidget::fadeIsTranslucentOnlyWhileItRuns()
{
    Stage stage;
    const QSignalSpy opened(stage.popup, &PopupWidget::popupOpened);
    QVERIFY(!stage.popup->testAttribute(Qt::WA_TranslucentBackground));
    stage.popup->showPopup();
    QVERIFY(stage.popup->isVisible());
    QVERIFY(stage.popup->testAttribute(Qt::WA_TranslucentBackground));
    QVERIFY(stage.popup->effectAlpha() < 1.0);
    QTRY_COMPARE(opened.size(), 1);
    QVERIFY(!stage.popup->testAttribute(Qt::WA_TranslucentBackground));
    QCOMPARE(stage.popup->effectAlpha(), 1.0);

    stage.popup->hidePopup();
    QVERIFY(stage.popup->isVisible());
    QVERIFY(stage.popup->testAttribute(Qt::WA_TranslucentBackground));
    QTRY_COMPARE(opened.size(), 2);
    QVERIFY(!stage.popup->testAttribute(Qt::WA_TranslucentBackground));
    QCOMPARE(stage.popup->effectAlpha(), 0.0);
}

void tst_PopupWidget::translucentPopupStaysTranslucent()
{
    Stage stage;
    stage.popup->setAttribute(Qt::WA_TranslucentBackground);
    const QSignalSpy opened(stage.popup, &PopupWidget::popupOpened);
    stage.popup->showPopup();
    QTRY_COMPARE(opened.size(), 1);
    QVERIFY(stage.popup->testAttribute(Qt::WA_TranslucentBackground));
}

void tst_PopupWidget::scrollSlidesASnapshotIn()
{
    Stage stage;
    stage.popup->setAnimationEffect(PopupWidget::ScrollEffect);
    stage.popup->setEffectDuration(kLong);
    stage.popup->showPopup();
    QVERIFY(stage.popup->isHidden());
    QVERIFY(stage.effectLabel()->isVisible());
    const QRect full = stage.popup->geometry();
    const QRect rolledUp(full.topLeft(), QSize(full.width(), 0));
    QCOMPARE(stage.priv()->scrollAnimation->startValue().toRect(), rolledUp);
    QCOMPARE(stage.priv()->scrollAnimation->endValue().toRect(), full);
    QCOMPARE(stage.effectLabel()->pixmap(Qt::ReturnByValue).size(), full.size());

    stage.priv()->scrollAnimation->setCurrentTime(kLong / 2);
    const QRect halfWay = stage.popup->effectGeometry();
    QCOMPARE(halfWay, stage.effectLabel()->geometry());
    QCOMPARE(halfWay.topLeft(), full.topLeft());
    QVERIFY(halfWay.height() > 0 && halfWay.height() < full.height());

    stage.priv()->scrollAnimation->setCurrentTime(kLong);
    QVERIFY(stage.popup->isVisible());
    QVERIFY(stage.effectLabel()->isHidden());
}

void tst_PopupWidget::scrollSlidesASnapshotOut()
{
    Stage stage;
    stage.popup->setAnimationEffect(PopupWidget::ScrollEffect);
    stage.popup->setEffectDuration(0);
    stage.popup->showPopup();
    stage.popup->setEffectDuration(kLong);
    stage.popup->hidePopup();
    QVERIFY(stage.popup->isHidden());
    QVERIFY(stage.effectLabel()->isVisible());
    QCOMPARE(stage.popup->effectGeometry(), stage.popup->geometry());

    stage.priv()->scrollAnimation->setCurrentTime(kLong / 2);
    QVERIFY(stage.popup->effectGeometry().height() < stage.popup->height());
    stage.priv()->scrollAnimation->setCurrentTime(0);
    QVERIFY(stage.effectLabel()->isHidden());
    QVERIFY(stage.popup->isHidden());
}

void tst_PopupWidget::snapshotAlignment_data()
{
    QTest::addColumn<PopupWidget::VerticalDirection>("vertical");
    QTest::addColumn<Qt::LayoutDirection>("horizontal");
    QTest::addColumn<Qt::Alignment>("expected");

    QTest::newRow("down, left-to-right") << PopupWidget::TopToBottom << Qt::LeftToRight
                                         << Qt::Alignment(Qt::AlignRight | Qt::AlignBottom);
    QTest::newRow("down, right-to-left") << PopupWidget::TopToBottom << Qt::RightToLeft
                                         << Qt::Alignment(Qt::AlignLeft | Qt::AlignBottom);
    QTest::newRow("up, left-to-right") << PopupWidget::BottomToTop << Qt::LeftToRight
                                       << Qt::Alignment(Qt::AlignRight | Qt::AlignTop);
    QTest::newRow("up, right-to-left") << PopupWidget::BottomToTop << Qt::RightToLeft
                                       << Qt::Alignment(Qt::AlignLeft | Qt::AlignTop);
}

void tst_PopupWidget::snapshotAlignment()
{
    QFETCH(PopupWidget::VerticalDirection, vertical);
    QFETCH(Qt::LayoutDirection, horizontal);
    QFETCH(Qt::Alignment, expected);

    Stage stage;
    stage.popup->setAnimationEffect(PopupWidget::ScrollEffect);
    stage.popup->setVerticalDirection(vertical);
    stage.popup->setHorizontalDirection(horizontal);
    stage.popup->showPopup();
    QCOMPARE(stage.effectLabel()->alignment(), expected);
}

void tst_PopupWidget::snapshotKeepsTransparency()
{
    Stage stage;
    stage.popup->setAnimationEffect(PopupWidget::ScrollEffect);
    stage.popup->setEffectAlpha(0.0);
    stage.popup->showPopup();
    const auto corner = [&stage] {
        const QPixmap snapshot = stage.effectLabel()->pixmap(Qt::ReturnByValue);
        return snapshot.toImage().pixelColor(0, 0).alpha();
    };
    QCOMPARE(corner(), 255);
    QVERIFY(!stage.effectLabel()->testAttribute(Qt::WA_TranslucentBackground));

    stage.popup->hidePopup();
    QTRY_VERIFY(stage.effectLabel()->isHidden());
    stage.popup->setAttribute(Qt::WA_TranslucentBackground);
    stage.popup->showPopup();
    QCOMPARE(corner(), 0);
    QVERIFY(stage.effectLabel()->testAttribute(Qt::WA_TranslucentBackground));
}

void tst_PopupWidget::widgetRectDrivesTheEffectLabel()
{
    PopupWidget popup;
    QVERIFY(popup.dynamicPropertyNames().contains(QByteArrayLiteral("widgetRect")));
    popup.setProperty("widgetRect", QRect(1, 2, 3, 4));
    QCOMPARE(popup.effectGeometry(), QRect(1, 2, 3, 4));
    popup.setProperty("anotherProperty", QRect(5, 6, 7, 8));
    QCOMPARE(popup.effectGeometry(), QRect(1, 2, 3, 4));
}

void tst_PopupWidget::fadeEffectShowsNothingUntilItsEnd()
{
    Stage stage;
    stage.popup->setAnimationEffect(PopupWidget::FadeEffect);
    stage.popup->setEffectDuration(kLong);
    stage.popup->showPopup();
    stage.priv()->fadeAnimation->setCurrentTime(kLong - 1);
    QVERIFY(stage.popup->isHidden());
    QVERIFY(stage.effectLabel()->isHidden());
    stage.priv()->fadeAnimation->setCurrentTime(kLong);
    QVERIFY(stage.popup->isVisible());
    QVERIFY(!stage.popup->testAttribute(Qt::WA_TranslucentBackground));
}

void tst_PopupWidget::turnsAroundWhileShowing_data()
{
    comesAndGoes_data();
}

void tst_PopupWidget::turnsAroundWhileShowing()
{
    QFETCH(PopupWidget::AnimationEffect, effect);

    Stage stage;
    stage.popup->setAnimationEffect(effect);
    stage.popup->setEffectDuration(kLong);
    const QSignalSpy opened(stage.popup, &PopupWidget::popupOpened);
    QPropertyAnimation *animation = stage.priv()->currentAnimation();
    stage.popup->showPopup();
    animation->setCurrentTime(kLong / 2);
    stage.popup->hidePopup();
    QCOMPARE(animation->state(), QAbstractAnimation::Running);
    QVERIFY(animation->currentTime() <= int(kLong / 2));
    animation->setCurrentTime(0);
    QCOMPARE(opened.size(), 1);
    QCOMPARE(opened.at(0).at(0).toBool(), false);
    QVERIFY(stage.popup->isHidden());
    QVERIFY(stage.effectLabel()->isHidden());
}

void tst_PopupWidget::turnsAroundWhileHiding_data()
{
    comesAndGoes_data();
}

void tst_PopupWidget::turnsAroundWhileHiding()
{
    QFETCH(PopupWidget::AnimationEffect, effect);

    Stage stage;
    stage.popup->setAnimationEffect(effect);
    stage.popup->setEffectDuration(0);
    stage.popup->showPopup();
    stage.popup->setEffectDuration(kLong);
    const QSignalSpy opened(stage.popup, &PopupWidget::popupOpened);
    QPropertyAnimation *animation = stage.priv()->currentAnimation();
    stage.popup->hidePopup();
    animation->setCurrentTime(kLong / 2);
    stage.popup->showPopup();
    QCOMPARE(animation->state(), QAbstractAnimation::Running);
    animation->setCurrentTime(kLong);
    QCOMPARE(opened.size(), 1);
    QCOMPARE(opened.at(0).at(0).toBool(), true);
    QVERIFY(stage.popup->isVisible());
    QVERIFY(stage.effectLabel()->isHidden());
}

void tst_PopupWidget::pausedAnimationResumes()
{
    Stage stage;
    stage.popup->setEffectDuration(kLong);
    stage.popup->showPopup();
    stage.priv()->fadeAnimation->pause();
    stage.popup->showPopup();
    QCOMPARE(stage.priv()->fadeAnimation->state(), QAbstractAnimation::Running);
}

void tst_PopupWidget::changedEffectEndsTheRunningOne_data()
{
    comesAndGoes_data();
}

void tst_PopupWidget::changedEffectEndsTheRunningOne()
{
    QFETCH(PopupWidget::AnimationEffect, effect);

    Stage stage;
    const auto other =
        effect == PopupWidget::ScrollEffect ? PopupWidget::FadeEffect : PopupWidget::ScrollEffect;
    stage.popup->setAnimationEffect(effect);
    stage.popup->setEffectDuration(kLong);
    const QSignalSpy opened(stage.popup, &PopupWidget::popupOpened);
    stage.popup->showPopup();
    stage.popup->setAnimationEffect(other);
    QVERIFY(stage.popup->isVisible());
    QCOMPARE(opened.size(), 1);

    stage.popup->hidePopup();
    stage.popup->setAnimationEffect(effect);
    QVERIFY(stage.popup->isHidden());
    QVERIFY(stage.effectLabel()->isHidden());
    QCOMPARE(opened.size(), 2);
    QCOMPARE(opened.at(1).at(0).toBool(), false);
}

void tst_PopupWidget::endsWhereItsBaseWidgetIs()
{
    Stage stage;
    auto *base = new QWidget(&stage.window);
    base->setGeometry(10, 10, 200, 100);
    base->show();
    QVERIFY(QTest::qWaitForWindowExposed(&stage.window));
    stage.popup->setBaseWidget(base);
    stage.popup->setEffectDuration(kLong);
    stage.popup->showPopup();
    base->move(60, 80);
    stage.priv()->fadeAnimation->setCurrentTime(kLong);
    QCOMPARE(stage.popup->pos(), stage.window.mapToGlobal(QPoint(60, 180)));
}

void tst_PopupWidget::returnsOnceWhenTheWindowManagerMovesIt()
{
    Stage stage;
    QVERIFY(QTest::qWaitForWindowExposed(&stage.window));
    stage.popup->setEffectDuration(0);
    stage.popup->showPopup();
    const QPoint place = stage.popup->pos();
    // What has arrived from a real window manager so far shall not count.
    stage.priv()->mayCorrectPlace = true;

    moveFromOutside(*stage.popup, QPoint(3, 4));
    QCOMPARE(stage.popup->pos(), place);
    moveFromOutside(*stage.popup, QPoint(5, 6));
    QCOMPARE(stage.popup->pos(), QPoint(5, 6));
}

void tst_PopupWidget::doesNothingWhenShown()
{
    Stage stage;
    stage.popup->setEffectDuration(0);
    stage.popup->showPopup();
    const QPoint place = stage.popup->pos();
    const QSignalSpy opened(stage.popup, &PopupWidget::popupOpened);
    stage.window.move(300, 200);
    stage.popup->showPopup();
    QCOMPARE(stage.popup->pos(), place);
    QVERIFY(opened.isEmpty());
}

void tst_PopupWidget::doesNothingOverAHiddenBaseWidget()
{
    Stage stage;
    stage.popup->setEffectDuration(0);
    stage.window.hide();
    const QSignalSpy opened(stage.popup, &PopupWidget::popupOpened);
    stage.popup->showPopup();
    QVERIFY(stage.popup->isHidden());
    QVERIFY(opened.isEmpty());
}

void tst_PopupWidget::hideOfAHiddenPopupDoesNothing()
{
    Stage stage;
    stage.popup->setEffectDuration(0);
    const QSignalSpy opened(stage.popup, &PopupWidget::popupOpened);
    stage.popup->hidePopup();
    QVERIFY(opened.isEmpty());
}

void tst_PopupWidget::showsAndHidesByFlag()
{
    Stage stage;
    stage.popup->setEffectDuration(0);
    stage.popup->showPopup(true);
    QVERIFY(stage.popup->isVisible());
    stage.popup->showPopup(false);
    QVERIFY(stage.popup->isHidden());
}

void tst_PopupWidget::closesAMenuOfItsOwn()
{
    Stage stage;
    stage.popup->setEffectDuration(0);
    stage.popup->showPopup();
    QMenu menu(stage.popup);
    menu.addAction(QStringLiteral("action"));
    menu.popup(QPoint(10, 10));
    QCOMPARE(QApplication::activePopupWidget(), &menu);
    stage.popup->hidePopup();
    QVERIFY(menu.isHidden());
}

void tst_PopupWidget::leavesAnotherMenuOpen()
{
    Stage stage;
    stage.popup->setEffectDuration(0);
    stage.popup->showPopup();
    QMenu menu(&stage.window);
    menu.addAction(QStringLiteral("action"));
    menu.popup(QPoint(10, 10));
    stage.popup->hidePopup();
    QVERIFY(stage.popup->isHidden());
    QVERIFY(menu.isVisible());
}

void tst_PopupWidget::forgetsADestroyedBaseWidget()
{
    Stage stage;
    stage.popup->setEffectDuration(0);
    auto base = std::make_unique<QWidget>();
    base->show();
    stage.popup->setBaseWidget(base.get());
    QCOMPARE(stage.popup->baseWidget(), base.get());
    stage.popup->showPopup();
    const QRect place = stage.popup->geometry();
    base.reset();
    QCOMPARE(stage.popup->baseWidget(), nullptr);
    QVERIFY(stage.popup->isVisible());
    QCOMPARE(stage.popup->geometry(), place);
    stage.popup->hidePopup();
    QVERIFY(stage.popup->isHidden());
}

void tst_PopupWidget::forgetsAnEarlierBaseWidget()
{
    Stage stage;
    auto earlier = std::make_unique<QWidget>();
    QWidget later;
    stage.popup->setBaseWidget(earlier.get());
    stage.popup->setBaseWidget(&later);
    earlier.reset();
    QCOMPARE(stage.popup->baseWidget(), &later);
    stage.popup->setBaseWidget(nullptr);
    QCOMPARE(stage.popup->baseWidget(), nullptr);
}

void tst_PopupWidget::diesWithItsBaseWidget()
{
    auto stage = std::make_unique<Stage>();
    const QPointer<PopupWidget> popup(stage->popup);
    popup->showPopup();
    stage.reset();
    QVERIFY(popup.isNull());
}

void tst_PopupWidget::diesWhileItsAnimationRuns()
{
    QWidget window;
    window.show();
    for (const auto effect : {PopupWidget::WindowOpacityFadeEffect, PopupWidget::ScrollEffect,
                              PopupWidget::FadeEffect}) {
        auto popup = std::make_unique<PopupWidget>(&window);
        popup->resize(50, 20);
        popup->setAnimationEffect(effect);
        popup->showPopup();
        popup.reset();
    }
    QVERIFY(window.children().isEmpty());
}

void tst_PopupWidget::backgroundFades_data()
{
    QTest::addColumn<double>("effectAlpha");
    QTest::addColumn<int>("windowAlpha");
    QTest::addColumn<int>("expected");

    QTest::newRow("nothing") << 0.0 << 255 << 0;
    QTest::newRow("half") << 0.5 << 255 << 128;
    QTest::newRow("all") << 1.0 << 255 << 255;
    QTest::newRow("translucent window colour") << 0.5 << 128 << 64;
    QTest::newRow("overshoot") << 1.2 << 255 << 255;
    QTest::newRow("undershoot") << -0.2 << 255 << 0;
}

void tst_PopupWidget::backgroundFades()
{
    QFETCH(double, effectAlpha);
    QFETCH(int, windowAlpha);
    QFETCH(int, expected);

    PopupWidget popup;
    popup.resize(20, 20);
    QPalette palette = popup.palette();
    palette.setColor(QPalette::Window, QColor(200, 40, 80, windowAlpha));
    popup.setPalette(palette);
    popup.setEffectAlpha(effectAlpha);
    QCOMPARE(popup.effectAlpha(), effectAlpha);
    const QColor painted = paintedColor(popup);
    QVERIFY2(qAbs(painted.alpha() - expected) <= 1, qPrintable(painted.name(QColor::HexArgb)));
    if (expected == 255) {
        QCOMPARE(painted, QColor(200, 40, 80));
    }
}

void tst_PopupWidget::gradientFades()
{
    PopupWidget popup;
    popup.resize(20, 20);
    QLinearGradient gradient(0, 0, 20, 0);
    gradient.setColorAt(0.0, QColor(200, 40, 80));
    gradient.setColorAt(1.0, QColor(200, 40, 80, 128));
    QPalette palette = popup.palette();
    palette.setBrush(QPalette::Window, gradient);
    popup.setPalette(palette);
    popup.setEffectAlpha(0.5);

    const QBrush brush = popup.findChild<PopupWidgetPrivate *>()->background();
    QCOMPARE(brush.style(), Qt::LinearGradientPattern);
    const QGradientStops stops = brush.gradient()->stops();
    QCOMPARE(stops.size(), 2);
    QVERIFY(qAbs(stops.at(0).second.alpha() - 128) <= 1);
    QVERIFY(qAbs(stops.at(1).second.alpha() - 64) <= 1);
    QVERIFY(qAbs(paintedColor(popup).alpha() - 96) <= 4);
}

void tst_PopupWidget::paintsItsFrame()
{
    PopupWidget popup;
    popup.resize(20, 20);
    popup.setEffectAlpha(0.0);
    popup.setFrameStyle(QFrame::Box | QFrame::Plain);
    QPalette palette = popup.palette();
    palette.setColor(QPalette::WindowText, Qt::red);
    popup.setPalette(palette);
    QImage image(popup.size(), QImage::Format_ARGB32);
    image.fill(Qt::transparent);
    popup.render(&image, QPoint(), QRegion(), QWidget::RenderFlags());
    QCOMPARE(image.pixelColor(0, 10), QColor(Qt::red));
    QCOMPARE(image.pixelColor(10, 10).alpha(), 0);
}

ZEL_TEST_MAIN(tst_PopupWidget)
#include "tst_PopupWidget.moc"
