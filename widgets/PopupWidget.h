#pragma once

#include <QEasingCurve>
#include <QFrame>
#include <QRect>

class PopupWidgetPrivate;

/// A frameless popup that is placed against a base widget and comes and goes with an animation.
///
/// The popup is hidden after construction. It never takes the keyboard focus away from the window
/// that it is shown over. A running show or hide animation can be turned around at any moment by
/// calling the opposite slot.
class PopupWidget : public QFrame
{
    Q_OBJECT
    Q_DISABLE_COPY_MOVE(PopupWidget)
    Q_PROPERTY(AnimationEffect animationEffect READ animationEffect WRITE setAnimationEffect)
    Q_PROPERTY(uint effectDuration READ effectDuration WRITE setEffectDuration)
    Q_PROPERTY(QEasingCurve easingCurve READ easingCurve WRITE setEasingCurve)
    Q_PROPERTY(Qt::Alignment alignment READ alignment WRITE setAlignment)
    Q_PROPERTY(Qt::Orientations orientation READ orientation WRITE setOrientation)
    Q_PROPERTY(
        VerticalDirection verticalDirection READ verticalDirection WRITE setVerticalDirection)
    Q_PROPERTY(Qt::LayoutDirection horizontalDirection READ horizontalDirection WRITE
                   setHorizontalDirection)
    Q_PROPERTY(double effectAlpha READ effectAlpha WRITE setEffectAlpha)
    Q_PROPERTY(QRect effectGeometry READ effectGeometry WRITE setEffectGeometry)

public:
    /// How the popup comes and goes.
    enum AnimationEffect {
        /// The popup is on the screen for the whole animation; its background fades.
        WindowOpacityFadeEffect = 0,
        /// A picture of the popup slides out of an edge of the popup's place. It is shown by the
        /// effect label, whose rectangle the animation drives through the dynamic property
        /// "widgetRect" of the popup.
        ScrollEffect = 1,
        /// The popup appears, whole, when the animation has ended: the duration is a delay. On the
        /// way out its background fades as far as its window can show it.
        FadeEffect = 2
    };
    Q_ENUM(AnimationEffect)

    /// On which side of the aligned edge of the base widget the popup opens.
    enum VerticalDirection {
        /// It hangs down from the edge.
        TopToBottom = 0,
        /// It stands up from the edge.
        BottomToTop = 1
    };
    Q_ENUM(VerticalDirection)

    /// Creates a hidden popup. @p baseWidget, which may be null, is the widget that it is placed
    /// against, and its parent.
    explicit PopupWidget(QWidget *baseWidget = nullptr);
    ~PopupWidget() override;

    /// The widget that the popup is placed against; null when there is none or it was destroyed.
    [[nodiscard]] QWidget *baseWidget() const;

    [[nodiscard]] AnimationEffect animationEffect() const;
    /// A running animation jumps to its end first.
    void setAnimationEffect(AnimationEffect effect);

    /// Length of the show and the hide animation, in milliseconds.
    [[nodiscard]] uint effectDuration() const;
    void setEffectDuration(uint milliseconds);

    [[nodiscard]] QEasingCurve easingCurve() const;
    void setEasingCurve(const QEasingCurve &curve);

    /// Which edges or centres of the base widget the popup keeps to. AlignJustify takes over the
    /// base widget's width, AlignTop together with AlignBottom its height.
    [[nodiscard]] Qt::Alignment alignment() const;
    void setAlignment(Qt::Alignment alignment);

    /// The directions in which the scroll effect unrolls the popup.
    [[nodiscard]] Qt::Orientations orientation() const;
    void setOrientation(Qt::Orientations orientation);

    [[nodiscard]] VerticalDirection verticalDirection() const;
    void setVerticalDirection(VerticalDirection direction);

    /// Right-to-left mirrors the horizontal placement and the scroll effect.
    [[nodiscard]] Qt::LayoutDirection horizontalDirection() const;
    void setHorizontalDirection(Qt::LayoutDirection direction);

    /// How much of the background's opacity is painted: 0.0 nothing, 1.0 all of it.
    [[nodiscard]] double effectAlpha() const;

    /// Rectangle of the effect label, in global coordinates.
    [[nodiscard]] QRect effectGeometry() const;

public slots:
    virtual void hidePopup();
    /// Places the popup and starts its show animation, unless it is already shown or its base
    /// widget is not visible.
    virtual void showPopup();
    /// Calls showPopup() for true and hidePopup() for false.
    void showPopup(bool show);
    /// Stores the value and repaints at once.
    void setEffectAlpha(double alpha);
    void setEffectGeometry(const QRect &rect);

public:
    /// The popup's parent stays the same. Takes effect on the next show.
    virtual void setBaseWidget(QWidget *baseWidget);

public slots:
    /// Ends a show or a hide: called when the animation has run to its end.
    virtual void onEffectFinished();
    void onBaseWidgetDestroyed();

signals:
    /// True when a show animation has finished, false when a hide animation has.
    void popupOpened(bool opened);

protected:
    /// For derived classes, which hand their private object upward. The popup takes ownership.
    PopupWidget(PopupWidgetPrivate &priv, QWidget *baseWidget);

    bool event(QEvent *event) override;
    void moveEvent(QMoveEvent *event) override;
    void paintEvent(QPaintEvent *event) override;

    PopupWidgetPrivate *const d;
};
