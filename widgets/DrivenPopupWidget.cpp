#include "widgets/DrivenPopupWidget.h"

#include "widgets/DrivenPopupWidget_p.h"

#include <QApplication>
#include <QPropertyAnimation>
#include <QTimer>

#include <algorithm>
#include <limits>

namespace {

constexpr char kForcedClosed[] = "forcedClosed";

enum ForcedClosed { NotForced = 0, WhileShown = 1, WhileShowing = 2 };

bool isWindowOrDialog(const QWidget *widget)
{
    return widget->windowType() == Qt::Window || widget->windowType() == Qt::Dialog;
}

/// True for the widgets whose change of window state may have covered the popup.
bool mayCover(const QWidget *widget)
{
    switch (widget->windowType()) {
    case Qt::Window:
    case Qt::ToolTip:
    case Qt::Popup:
        return true;
    case Qt::Dialog:
        return widget->isModal();
    default:
        return false;
    }
}

bool isDrivenPopup(const QWidget *widget)
{
    return qobject_cast<const DrivenPopupWidget *>(widget) != nullptr;
}

} // namespace

DrivenPopupWidgetPrivate::DrivenPopupWidgetPrivate() = default;
DrivenPopupWidgetPrivate::~DrivenPopupWidgetPrivate() = default;

void DrivenPopupWidgetPrivate::init()
{
    PopupWidgetPrivate::init();
    setProperty(kForcedClosed, int(NotForced));
    hideDelay = new QTimer(this);
    hideDelay->setSingleShot(true);
    connect(hideDelay, &QTimer::timeout, this, [this] { temporarilyHiddenOn(); });
}

void DrivenPopupWidgetPrivate::startWatching()
{
    if (active) {
        return;
    }
    active = true;
    if (baseWidget != nullptr) {
        baseWidget->installEventFilter(q);
    }
    qApp->installEventFilter(this);
}

void DrivenPopupWidgetPrivate::stopWatching()
{
    hideDelay->stop();
    if (!active) {
        return;
    }
    active = false;
    if (baseWidget != nullptr) {
        baseWidget->removeEventFilter(q);
    }
    qApp->removeEventFilter(this);
}

void DrivenPopupWidgetPrivate::armHideDelay()
{
    constexpr uint kLongest = std::numeric_limits<int>::max();
    // One timer, started anew: the time of an earlier show must not cut this one short.
    hideDelay->start(static_cast<int>(std::min(hideDelayMsec, kLongest)));
}

void DrivenPopupWidgetPrivate::followBaseWidget()
{
    q->move(placement().topLeft());
}

bool DrivenPopupWidgetPrivate::eventFilter(QObject *watched, QEvent *event)
{
    if (watched->isWidgetType()) {
        watch(static_cast<QWidget *>(watched), event->type());
    }
    return PopupWidgetPrivate::eventFilter(watched, event);
}

void DrivenPopupWidgetPrivate::watch(QWidget *widget, QEvent::Type type)
{
    if (type == QEvent::ApplicationDeactivate) {
        QTimer::singleShot(0, this, &DrivenPopupWidgetPrivate::onApplicationDeactivate);
    }
    if (baseWidget == nullptr || !active) {
        return;
    }
    switch (type) {
    case QEvent::Move:
        if (widget != baseWidget && isWindowOrDialog(widget)) {
            temporarilyHiddenOn(true);
        }
        break;
    case QEvent::Resize:
        if (widget == baseWidget || widget->isAncestorOf(baseWidget)) {
            q->setGeometry(placement());
        }
        break;
    case QEvent::WindowStateChange:
        if (mayCover(widget) && !isDrivenPopup(widget) && widget != baseWidget->window()) {
            updateVisibility();
        }
        break;
    case QEvent::WindowDeactivate:
        updateVisibility();
        break;
    case QEvent::MouseButtonPress:
        temporarilyHiddenOn(false);
        break;
    case QEvent::RequestSoftwareInputPanel:
        // Deliberate: whoever asks for an input panel is where the user types.
        widget->window()->activateWindow();
        break;
    default:
        break;
    }
}

void DrivenPopupWidgetPrivate::temporarilyHiddenOn(bool force)
{
    const bool isShowing = isRunning(QAbstractAnimation::Forward);
    const bool isOnScreen = q->isVisible() || isShowing;
    if (!active || !isOnScreen || isExplicitlyHidden() || isRunning(QAbstractAnimation::Backward)) {
        return;
    }
    setProperty(kForcedClosed, int(isShowing ? WhileShowing : WhileShown));
    currentAnimation()->stop();
    if (isShowing || force) {
        hideAtOnce();
        stopWatching();
    } else {
        q->hidePopup();
    }
}

void DrivenPopupWidgetPrivate::temporarilyHiddenOff()
{
    const int forcedClosed = property(kForcedClosed).toInt();
    if (forcedClosed < WhileShown) {
        q->showPopup();
        return;
    }
    q->show();
    if (forcedClosed == WhileShowing) {
        emit q->popupOpened(true);
    }
    setProperty(kForcedClosed, int(NotForced));
}

void DrivenPopupWidgetPrivate::updateVisibility()
{
    const bool isBaseActive = baseWidget != nullptr && baseWidget->window()->isActiveWindow();
    if (isBaseActive) {
        return;
    }
    if (baseWidget == nullptr || !isDrivenPopup(QApplication::activeWindow())) {
        temporarilyHiddenOn(true);
    }
}

void DrivenPopupWidgetPrivate::onApplicationDeactivate()
{
    if (QApplication::activeWindow() == nullptr) {
        temporarilyHiddenOn(false);
    }
}

bool DrivenPopupWidgetPrivate::isExplicitlyHidden() const
{
    return q->testAttribute(Qt::WA_WState_ExplicitShowHide) && q->isHidden();
}

DrivenPopupWidget::DrivenPopupWidget(QWidget *baseWidget)
    : DrivenPopupWidget(*new DrivenPopupWidgetPrivate, baseWidget)
{
}

DrivenPopupWidget::DrivenPopupWidget(DrivenPopupWidgetPrivate &priv, QWidget *baseWidget)
    : PopupWidget(priv, baseWidget)
{
}

DrivenPopupWidget::~DrivenPopupWidget() = default;

DrivenPopupWidgetPrivate *DrivenPopupWidget::driven() const
{
    return static_cast<DrivenPopupWidgetPrivate *>(d);
}

bool DrivenPopupWidget::isActive() const
{
    return driven()->active;
}

uint DrivenPopupWidget::hideDelayMsec() const
{
    return driven()->hideDelayMsec;
}

void DrivenPopupWidget::setHideDelayMsec(uint milliseconds)
{
    if (milliseconds != 0) {
        driven()->hideDelayMsec = milliseconds;
    }
}

void DrivenPopupWidget::setBaseWidget(QWidget *baseWidget)
{
    if (d->baseWidget != nullptr) {
        d->baseWidget->removeEventFilter(this);
    }
    PopupWidget::setBaseWidget(baseWidget);
    if (baseWidget != nullptr && isActive()) {
        baseWidget->installEventFilter(this);
    }
}

bool DrivenPopupWidget::eventFilter(QObject *watched, QEvent *event)
{
    if (event->type() == QEvent::Move && (watched == d->baseWidget || isActive())) {
        driven()->followBaseWidget();
    }
    return PopupWidget::eventFilter(watched, event);
}

void DrivenPopupWidget::hidePopup()
{
    // Deliberate: the widget's own property, not the one of the private object.
    setProperty(kForcedClosed, int(NotForced));
    driven()->stopWatching();
    PopupWidget::hidePopup();
}

void DrivenPopupWidget::showPopup()
{
    PopupWidget::showPopup();
    driven()->startWatching();
    driven()->armHideDelay();
}
