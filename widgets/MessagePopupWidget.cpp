#include "widgets/MessagePopupWidget.h"

#include "widgets/MessageLabel.h"
#include "widgets/MessagePopupWidget_p.h"

#include <QAccessible>
#include <QEvent>
#include <QHBoxLayout>
#include <QPropertyAnimation>
#include <QScreen>
#include <QTimer>
#include <QWindow>

#include <algorithm>
#include <array>
#include <chrono>

namespace {

using namespace std::chrono_literals;

constexpr auto kShowDelay = 30ms;
constexpr int kShowRetries = 10;

// Designed sizes, in pixels.
constexpr double kOuterMargin = 0.0; // Deliberate: the frame fills the popup.
constexpr double kFrameMargin = 3.0;
constexpr double kFramePadding = 2.0;
constexpr double kFrameBorder = 1.0;
constexpr double kNarrowestLimit = 320.0;

/// Style sheets by message type. The frame's sheet goes on with kFrameTail.
struct MessageStyle
{
    const char *label;
    const char *frame;
};

constexpr std::array<MessageStyle, 2> kStyles{{
    {"QLabel { color: rgb(199, 3, 27); border: none; padding: 0px; }",
     "QFrame { border: 1px solid rgb(252, 193, 195); background-color: rgb(252, 228, 228); "},
    {"QLabel { color: rgb(15, 73, 111); border: none; padding: 0px; }",
     "QFrame { border: 1px solid rgb(0, 120, 215); background-color: rgb(228, 248, 253); "},
}};

constexpr char kFrameTail[] = " border-radius: %1px; padding: %2px; }";

} // namespace

MessagePopupWidgetPrivate::MessagePopupWidgetPrivate() = default;
MessagePopupWidgetPrivate::~MessagePopupWidgetPrivate() = default;

void MessagePopupWidgetPrivate::init()
{
    DrivenPopupWidgetPrivate::init();
    scale = Scale(q->logicalDpiX());

    q->setAutoFillBackground(false);
    q->setAttribute(Qt::WA_NoSystemBackground);
    q->setAttribute(Qt::WA_TranslucentBackground);
    q->setStyleSheet(QStringLiteral("QFrame { background-color: transparent; }"));

    frame = new QFrame(q);
    frame->setObjectName(QStringLiteral("messageFrame"));
    frame->setSizePolicy(QSizePolicy::Minimum, QSizePolicy::Preferred);

    label = new MessageLabel(frame);
    label->setObjectName(QStringLiteral("messageLabel"));
    label->setSizePolicy(QSizePolicy::Minimum, QSizePolicy::Preferred);

    auto *frameLayout = new QHBoxLayout(frame);
    frameLayout->setSizeConstraint(QLayout::SetFixedSize);
    const int margin = scale.px(kFrameMargin);
    frameLayout->setContentsMargins(margin, margin, margin, margin);
    frameLayout->addWidget(label);

    outerLayout = new QHBoxLayout(q);
    outerLayout->setSizeConstraint(QLayout::SetFixedSize);
    const int outerMargin = scale.px(kOuterMargin);
    outerLayout->setContentsMargins(outerMargin, outerMargin, outerMargin, outerMargin);
    outerLayout->addWidget(frame);

    showDelay = new QTimer(this);
    showDelay->setSingleShot(true);
    showDelay->setInterval(kShowDelay);
    connect(showDelay, &QTimer::timeout, this, &MessagePopupWidgetPrivate::showOnScreen);
}

bool MessagePopupWidgetPrivate::eventFilter(QObject *watched, QEvent *event)
{
    if (awaitedWindow != nullptr && watched == awaitedWindow && event->type() == QEvent::Expose
        && awaitedWindow->isExposed()) {
        stopWaiting();
        showDelay->start();
    }
    return DrivenPopupWidgetPrivate::eventFilter(watched, event);
}

void MessagePopupWidgetPrivate::setAlignment(Qt::Alignment newAlignment)
{
    DrivenPopupWidgetPrivate::setAlignment(newAlignment);
    setMargin(newAlignment);
}

void MessagePopupWidgetPrivate::setMargin(Qt::Alignment sides) const
{
    const int margin = scale.px(kOuterMargin);
    QMargins margins = outerLayout->contentsMargins();
    if (sides.testFlag(Qt::AlignTop)) {
        margins.setBottom(margin);
    }
    if (sides.testFlag(Qt::AlignBottom)) {
        margins.setTop(margin);
    }
    if (sides.testFlag(Qt::AlignRight)) {
        margins.setLeft(margin);
    }
    if (sides.testFlag(Qt::AlignLeft)) {
        margins.setRight(margin);
    }
    outerLayout->setContentsMargins(margins);
}

void MessagePopupWidgetPrivate::showMessage(const QString &text, int type)
{
    applyStyle(type);
    label->setText(text);
    q->setAccessibleName(text);
    measure();
    stopWaiting();
    showRetries = kShowRetries;
    showDelay->start();
}

void MessagePopupWidgetPrivate::cancelMessage()
{
    showDelay->stop();
    stopWaiting();
}

void MessagePopupWidgetPrivate::showOnScreen()
{
    QWindow *window = baseWidget != nullptr ? baseWidget->window()->windowHandle() : nullptr;
    if (window != nullptr && window->isVisible() && !window->isExposed()) {
        awaitedWindow = window;
        window->installEventFilter(this);
        return;
    }
    if (isBeingUnmapped() && showRetries > 0) {
        --showRetries;
        showDelay->start();
        return;
    }
    q->showPopup();
    QAccessibleEvent alert(q, QAccessible::Alert);
    QAccessible::updateAccessibility(&alert);
}

bool MessagePopupWidgetPrivate::isBeingUnmapped() const
{
    return !q->isVisible() && q->windowHandle() != nullptr && q->windowHandle()->isExposed();
}

void MessagePopupWidgetPrivate::stopWaiting()
{
    if (awaitedWindow != nullptr) {
        awaitedWindow->removeEventFilter(this);
        awaitedWindow.clear();
    }
}

void MessagePopupWidgetPrivate::applyStyle(int type) const
{
    const bool isKnown = type >= 0 && type < static_cast<int>(kStyles.size());
    // For any other type the tail stands alone, deliberately, though the toolkit cannot read it.
    const MessageStyle style =
        isKnown ? kStyles.at(static_cast<std::size_t>(type)) : MessageStyle{"", ""};
    label->setStyleSheet(QLatin1String(style.label));
    frame->setStyleSheet(
        QLatin1String(style.frame)
        + QString(QLatin1String(kFrameTail)).arg(scale.px(0.0)).arg(scale.px(kFramePadding)));
}

void MessagePopupWidgetPrivate::measure()
{
    // An animation that ended now would bring the popup back at its old place.
    currentAnimation()->stop();

    q->setAttribute(Qt::WA_DontShowOnScreen);
    q->show();
    activateLayouts();
    q->hide();
    q->setAttribute(Qt::WA_DontShowOnScreen, false);
}

void MessagePopupWidgetPrivate::activateLayouts()
{
    for (QLayout *layout : {frame->layout(), q->layout()}) {
        layout->invalidate();
        layout->activate();
    }
}

void MessagePopupWidgetPrivate::fitToBaseWidget()
{
    label->setLineWidthLimit(widestLine());
    activateLayouts();
}

int MessagePopupWidgetPrivate::widestLine() const
{
    const QWidget *reference = baseWidget != nullptr ? baseWidget.data() : q;
    const int screenWidth = reference->screen()->availableGeometry().width();
    // One pixel less than there is: a centred popup of the full width would stick out on the left.
    const int baseWidth = baseWidget != nullptr ? baseWidget->width() - 1 : screenWidth;
    const int chrome =
        2 * (scale.px(kFrameMargin) + scale.px(kFramePadding) + scale.px(kFrameBorder));
    return std::min(std::max(baseWidth, scale.px(kNarrowestLimit)), screenWidth) - chrome;
}

MessagePopupWidget::MessagePopupWidget(QWidget *baseWidget)
    : DrivenPopupWidget(*new MessagePopupWidgetPrivate, baseWidget)
{
}

MessagePopupWidget::~MessagePopupWidget() = default;

MessagePopupWidgetPrivate *MessagePopupWidget::messagePrivate() const
{
    return static_cast<MessagePopupWidgetPrivate *>(d);
}

void MessagePopupWidget::showMessage(const QString &text, int type)
{
    messagePrivate()->showMessage(text, type);
}

QString MessagePopupWidget::message() const
{
    return messagePrivate()->label->text();
}

void MessagePopupWidget::setMargin(Qt::Alignment alignment)
{
    messagePrivate()->setMargin(alignment);
}

void MessagePopupWidget::hidePopup()
{
    messagePrivate()->cancelMessage();
    DrivenPopupWidget::hidePopup();
}

void MessagePopupWidget::showPopup()
{
    if (!isVisible()) {
        messagePrivate()->fitToBaseWidget();
    }
    DrivenPopupWidget::showPopup();
}
