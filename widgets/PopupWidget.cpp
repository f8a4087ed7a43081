#include "widgets/PopupWidget.h"

#include "widgets/PopupWidget_p.h"

#include <QApplication>
#include <QDynamicPropertyChangeEvent>
#include <QGradient>
#include <QLabel>
#include <QLayout>
#include <QMoveEvent>
#include <QPainter>
#include <QPixmap>
#include <QPropertyAnimation>

#include <algorithm>
#include <limits>

namespace {

/// The dynamic property that carries the scroll effect's rectangle to the effect label.
constexpr char kWidgetRect[] = "widgetRect";

QColor faded(QColor color, double alpha)
{
    color.setAlphaF(color.alphaF() * alpha);
    return color;
}

/// Unlike QWidget::isAncestorOf(), this sees through the borders of windows.
bool isInFamily(const QWidget *root, const QWidget *widget)
{
    while (widget != nullptr && widget != root) {
        widget = widget->parentWidget();
    }
    return widget != nullptr;
}

} // namespace

PopupWidgetPrivate::PopupWidgetPrivate() = default;
PopupWidgetPrivate::~PopupWidgetPrivate() = default;

void PopupWidgetPrivate::init()
{
    // A popup is only looked at: the window under it keeps the keyboard.
    q->setAttribute(Qt::WA_ShowWithoutActivating);

    effectLabel = new QLabel(q, Qt::ToolTip | Qt::FramelessWindowHint);
    effectLabel->setObjectName(QStringLiteral("effectLabel"));
    // The snapshot's alignment is meant as it stands, also in a right-to-left application.
    effectLabel->setLayoutDirection(Qt::LeftToRight);

    fadeAnimation = new QPropertyAnimation(q, "effectAlpha", q);
    fadeAnimation->setStartValue(0.0);
    fadeAnimation->setEndValue(1.0);

    // An animation refuses a dynamic property that does not exist yet.
    q->setProperty(kWidgetRect, QRect());
    scrollAnimation = new QPropertyAnimation(q, kWidgetRect, q);

    for (QPropertyAnimation *animation : {fadeAnimation, scrollAnimation}) {
        animation->setEasingCurve(QEasingCurve::OutCubic);
        connect(animation, &QAbstractAnimation::finished, q, &PopupWidget::onEffectFinished);
    }
    setEffectDuration(effectDuration);
}

void PopupWidgetPrivate::setAlignment(Qt::Alignment newAlignment)
{
    alignment = newAlignment;
}

void PopupWidgetPrivate::setBaseWidget(QWidget *widget)
{
    if (baseWidget != nullptr) {
        disconnect(baseWidget, &QObject::destroyed, q, &PopupWidget::onBaseWidgetDestroyed);
    }
    baseWidget = widget;
    if (widget != nullptr) {
        connect(widget, &QObject::destroyed, q, &PopupWidget::onBaseWidgetDestroyed);
    }
}

void PopupWidgetPrivate::setAnimationEffect(PopupWidget::AnimationEffect effect)
{
    if (isRunning(QAbstractAnimation::Forward)) {
        currentAnimation()->setCurrentTime(currentAnimation()->duration());
    } else if (isRunning(QAbstractAnimation::Backward)) {
        currentAnimation()->setCurrentTime(0);
    }
    animationEffect = effect;
}

void PopupWidgetPrivate::setEffectDuration(uint milliseconds)
{
    constexpr uint kLongest = std::numeric_limits<int>::max();
    effectDuration = milliseconds;
    for (QPropertyAnimation *animation : {fadeAnimation, scrollAnimation}) {
        animation->setDuration(static_cast<int>(std::min(milliseconds, kLongest)));
    }
}

void PopupWidgetPrivate::showPopup()
{
    const bool isShown =
        q->isVisible() && currentAnimation()->state() == QAbstractAnimation::Stopped;
    if (isShown || (baseWidget != nullptr && !baseWidget->isVisible())) {
        return;
    }
    if (q->layout() != nullptr && !q->testAttribute(Qt::WA_WState_Created)) {
        q->layout()->activate();
    }
    q->setGeometry(placement());
    mayCorrectPlace = true;
    currentAnimation()->setDirection(QAbstractAnimation::Forward);
    prepareShow(q->geometry());
    runCurrentAnimation();
}

void PopupWidgetPrivate::prepareShow(const QRect &full)
{
    switch (animationEffect) {
    case PopupWidget::WindowOpacityFadeEffect:
        makeTranslucent();
        q->show();
        break;
    case PopupWidget::ScrollEffect:
        effectLabel->setGeometry(collapsed(full));
        setScrollRange(full);
        refreshSnapshot();
        effectLabel->show();
        break;
    case PopupWidget::FadeEffect:
        break; // Deliberate: the popup appears when the animation has ended.
    }
}

void PopupWidgetPrivate::hidePopup()
{
    if (!q->isVisible() && currentAnimation()->state() == QAbstractAnimation::Stopped) {
        return;
    }
    currentAnimation()->setDirection(QAbstractAnimation::Backward);
    prepareHide(q->geometry());
    runCurrentAnimation();
}

void PopupWidgetPrivate::prepareHide(const QRect &full)
{
    switch (animationEffect) {
    case PopupWidget::WindowOpacityFadeEffect:
        makeTranslucent();
        break;
    case PopupWidget::ScrollEffect:
        setScrollRange(full);
        refreshSnapshot();
        effectLabel->setGeometry(full);
        effectLabel->show();
        activateBaseWindow();
        q->hide();
        break;
    case PopupWidget::FadeEffect:
        break;
    }
}

void PopupWidgetPrivate::finishEffect()
{
    if (effectMadeTranslucent) {
        q->setAttribute(Qt::WA_TranslucentBackground, false);
        effectMadeTranslucent = false;
    }
    const bool opened = currentAnimation()->direction() == QAbstractAnimation::Forward;
    if (opened) {
        // The base widget or the window manager may have moved meanwhile.
        q->setGeometry(placement());
        q->show();
        effectLabel->hide();
    } else {
        hideAtOnce();
    }
    emit q->popupOpened(opened);
}

void PopupWidgetPrivate::correctPlace()
{
    const QPoint place = placement().topLeft();
    if (mayCorrectPlace && q->isVisible() && q->pos() != place) {
        mayCorrectPlace = false;
        q->move(place);
    }
}

void PopupWidgetPrivate::hideAtOnce()
{
    activateBaseWindow();
    q->hide();
    effectLabel->hide();
    QWidget *activePopup = QApplication::activePopupWidget();
    if (isInFamily(q, activePopup)) {
        activePopup->close();
    }
}

QPropertyAnimation *PopupWidgetPrivate::currentAnimation() const
{
    return animationEffect == PopupWidget::ScrollEffect ? scrollAnimation : fadeAnimation;
}

bool PopupWidgetPrivate::isRunning(int direction) const
{
    return currentAnimation()->state() == QAbstractAnimation::Running
           && currentAnimation()->direction() == direction;
}

QRect PopupWidgetPrivate::placement() const
{
    if (baseWidget == nullptr) {
        return q->geometry();
    }
    const QRect base(baseWidget->mapToGlobal(QPoint()), baseWidget->size());
    if (!q->testAttribute(Qt::WA_WState_Created)) {
        return placedAgainst(base, q->sizeHint());
    }
    // A display that is behind may still report the size before the last change of layout.
    return placedAgainst(base, q->size().expandedTo(q->minimumSize()).boundedTo(q->maximumSize()));
}

QRect PopupWidgetPrivate::placedAgainst(const QRect &base, const QSize &size) const
{
    constexpr Qt::Alignment kBothEdges = Qt::AlignTop | Qt::AlignBottom;
    QSize placed = size;
    if (alignment.testFlag(Qt::AlignJustify) && orientation.testFlag(Qt::Vertical)) {
        placed.setWidth(base.width());
    }
    if ((alignment & kBothEdges) == kBothEdges) {
        placed.setHeight(base.height());
    }
    return {
        QPoint(horizontalPosition(base, placed.width()), verticalPosition(base, placed.height())),
        placed};
}

int PopupWidgetPrivate::horizontalPosition(const QRect &base, int width) const
{
    const bool isRightToLeft = horizontalDirection == Qt::RightToLeft;
    if (alignment.testFlag(Qt::AlignLeft)) {
        return isRightToLeft ? base.left() - width : base.left();
    }
    if (alignment.testFlag(Qt::AlignRight)) {
        return isRightToLeft ? base.right() + 1 - width : base.right() + 1;
    }
    if (alignment.testFlag(Qt::AlignHCenter)) {
        return (base.left() + base.right()) / 2 - width / 2;
    }
    return alignment.testFlag(Qt::AlignJustify) ? base.left() : 0;
}

int PopupWidgetPrivate::verticalPosition(const QRect &base, int height) const
{
    const bool standsUp = verticalDirection == PopupWidget::BottomToTop;
    if (alignment.testFlag(Qt::AlignTop)) {
        return standsUp ? base.top() - height : base.top();
    }
    if (alignment.testFlag(Qt::AlignBottom)) {
        return standsUp ? base.bottom() + 1 - height : base.bottom() + 1;
    }
    if (alignment.testFlag(Qt::AlignVCenter)) {
        return (base.top() + base.bottom()) / 2 - height / 2;
    }
    return 0;
}

QRect PopupWidgetPrivate::collapsed(const QRect &full) const
{
    QRect rect = full;
    if (orientation.testFlag(Qt::Vertical)) {
        if (verticalDirection == PopupWidget::BottomToTop) {
            rect.moveTop(full.bottom());
        }
        rect.setHeight(0);
    }
    if (orientation.testFlag(Qt::Horizontal)) {
        if (horizontalDirection == Qt::RightToLeft) {
            rect.moveLeft(full.right());
        }
        rect.setWidth(0);
    }
    return rect;
}

QBrush PopupWidgetPrivate::background() const
{
    // An easing curve may overshoot the ends of the animation.
    const double alpha = qBound(0.0, effectAlpha, 1.0);
    const QBrush &window = q->palette().window();
    if (window.gradient() == nullptr) {
        QBrush brush = window;
        brush.setColor(faded(window.color(), alpha));
        return brush;
    }
    QGradient gradient = *window.gradient();
    QGradientStops stops = gradient.stops();
    for (QGradientStop &stop : stops) {
        stop.second = faded(stop.second, alpha);
    }
    gradient.setStops(stops);
    QBrush brush(gradient);
    brush.setTransform(window.transform());
    return brush;
}

void PopupWidgetPrivate::makeTranslucent()
{
    if (!q->testAttribute(Qt::WA_TranslucentBackground)) {
        q->setAttribute(Qt::WA_TranslucentBackground);
        effectMadeTranslucent = true;
    }
}

void PopupWidgetPrivate::setScrollRange(const QRect &full) const
{
    scrollAnimation->setStartValue(collapsed(full));
    scrollAnimation->setEndValue(full);
}

void PopupWidgetPrivate::refreshSnapshot() const
{
    const bool isLeftToRight = horizontalDirection == Qt::LeftToRight;
    const bool standsUp = verticalDirection == PopupWidget::BottomToTop;
    effectLabel->setAlignment((isLeftToRight ? Qt::AlignRight : Qt::AlignLeft)
                              | (standsUp ? Qt::AlignTop : Qt::AlignBottom));

    const bool isTranslucent = q->testAttribute(Qt::WA_TranslucentBackground);
    if (isTranslucent) {
        QImage image(q->size() * q->devicePixelRatioF(), QImage::Format_ARGB32);
        image.setDevicePixelRatio(q->devicePixelRatioF());
        image.fill(Qt::transparent);
        q->render(&image);
        effectLabel->setPixmap(QPixmap::fromImage(image));
    } else {
        effectLabel->setPixmap(q->grab());
    }
    effectLabel->setAttribute(Qt::WA_TranslucentBackground, isTranslucent);
    effectLabel->setWindowOpacity(q->windowOpacity());
}

void PopupWidgetPrivate::activateBaseWindow() const
{
    // isActiveWindow() would not do: a tool window shares the activation of its parent.
    if (baseWidget != nullptr && QApplication::activeWindow() == q) {
        baseWidget->window()->activateWindow();
    }
}

void PopupWidgetPrivate::runCurrentAnimation() const
{
    if (currentAnimation()->state() == QAbstractAnimation::Stopped) {
        currentAnimation()->start();
    } else if (currentAnimation()->state() == QAbstractAnimation::Paused) {
        currentAnimation()->resume();
    }
}

PopupWidget::PopupWidget(QWidget *baseWidget)
    : PopupWidget(*new PopupWidgetPrivate, baseWidget)
{
}

PopupWidget::PopupWidget(PopupWidgetPrivate &priv, QWidget *baseWidget)
    : QFrame(baseWidget, Qt::Tool | Qt::FramelessWindowHint)
    , d(&priv)
{
    d->setParent(this);
    d->q = this;
    d->init();
    d->setBaseWidget(baseWidget);
}

PopupWidget::~PopupWidget()
{
    // An animation that dies at its end still reports it, too late for this object.
    d->fadeAnimation->disconnect(this);
    d->scrollAnimation->disconnect(this);
}

QWidget *PopupWidget::baseWidget() const
{
    return d->baseWidget;
}

PopupWidget::AnimationEffect PopupWidget::animationEffect() const
{
    return d->animationEffect;
}

void PopupWidget::setAnimationEffect(AnimationEffect effect)
{
    d->setAnimationEffect(effect);
}

uint PopupWidget::effectDuration() const
{
    return d->effectDuration;
}

void PopupWidget::setEffectDuration(uint milliseconds)
{
    d->setEffectDuration(milliseconds);
}

QEasingCurve PopupWidget::easingCurve() const
{
    return d->fadeAnimation->easingCurve();
}

void PopupWidget::setEasingCurve(const QEasingCurve &curve)
{
    d->fadeAnimation->setEasingCurve(curve);
    d->scrollAnimation->setEasingCurve(curve);
}

Qt::Alignment PopupWidget::alignment() const
{
    return d->alignment;
}

void PopupWidget::setAlignment(Qt::Alignment alignment)
{
    d->setAlignment(alignment);
}

Qt::Orientations PopupWidget::orientation() const
{
    return d->orientation;
}

void PopupWidget::setOrientation(Qt::Orientations orientation)
{
    d->orientation = orientation;
}

PopupWidget::VerticalDirection PopupWidget::verticalDirection() const
{
    return d->verticalDirection;
}

void PopupWidget::setVerticalDirection(VerticalDirection direction)
{
    d->verticalDirection = direction;
}

Qt::LayoutDirection PopupWidget::horizontalDirection() const
{
    return d->horizontalDirection;
}

void PopupWidget::setHorizontalDirection(Qt::LayoutDirection direction)
{
    d->horizontalDirection = direction;
}

double PopupWidget::effectAlpha() const
{
    return d->effectAlpha;
}

QRect PopupWidget::effectGeometry() const
{
    return d->effectLabel->geometry();
}

void PopupWidget::hidePopup()
{
    d->hidePopup();
}

void PopupWidget::showPopup()
{
    d->showPopup();
}

void PopupWidget::showPopup(bool show)
{
    if (show) {
        showPopup();
    } else {
        hidePopup();
    }
}

void PopupWidget::setEffectAlpha(double alpha)
{
    d->effectAlpha = alpha;
    repaint();
}

void PopupWidget::setEffectGeometry(const QRect &rect)
{
    d->effectLabel->setGeometry(rect);
}

void PopupWidget::setBaseWidget(QWidget *baseWidget)
{
    d->setBaseWidget(baseWidget);
}

void PopupWidget::onEffectFinished()
{
    d->finishEffect();
}

void PopupWidget::onBaseWidgetDestroyed()
{
    setBaseWidget(nullptr);
}

bool PopupWidget::event(QEvent *event)
{
    if (event->type() == QEvent::DynamicPropertyChange
        && static_cast<QDynamicPropertyChangeEvent *>(event)->propertyName() == kWidgetRect) {
        setEffectGeometry(property(kWidgetRect).toRect());
    }
    return QFrame::event(event);
}

void PopupWidget::moveEvent(QMoveEvent *event)
{
    QFrame::moveEvent(event);
    if (event->spontaneous()) {
        d->correctPlace();
    }
}

void PopupWidget::paintEvent(QPaintEvent *event)
{
    {
        QPainter painter(this);
        painter.fillRect(rect(), d->background());
    }
    QFrame::paintEvent(event);
}
