#pragma once

#include "widgets/PopupWidget.h"

#include <QBrush>
#include <QObject>
#include <QPointer>

class QAbstractAnimation;
class QLabel;
class QPropertyAnimation;

/// State and behaviour of a popup.
class PopupWidgetPrivate : public QObject
{
    Q_OBJECT
    Q_DISABLE_COPY_MOVE(PopupWidgetPrivate)

public:
    PopupWidgetPrivate();
    ~PopupWidgetPrivate() override;

    /// Builds what belongs to the popup. Called once, when @c q is set; each level calls its
    /// base's first.
    virtual void init();

    virtual void setAlignment(Qt::Alignment newAlignment);

    void setBaseWidget(QWidget *widget);
    void setAnimationEffect(PopupWidget::AnimationEffect effect);
    void setEffectDuration(uint milliseconds);

    void showPopup();
    void hidePopup();
    void finishEffect();
    /// Takes the popup back to where it belongs when the window manager has put it elsewhere.
    void correctPlace();
    /// Hides the popup without animation. Does not stop a running one.
    void hideAtOnce();

    [[nodiscard]] QPropertyAnimation *currentAnimation() const;
    [[nodiscard]] bool isRunning(int direction) const;

    /// Where the popup belongs now, in global coordinates.
    [[nodiscard]] QRect placement() const;
    /// Where a popup of @p size belongs against @p base, both in global coordinates.
    [[nodiscard]] QRect placedAgainst(const QRect &base, const QSize &size) const;
    /// @p full rolled up: start of a scroll-in, end of a scroll-out.
    [[nodiscard]] QRect collapsed(const QRect &full) const;

    /// The window background with @c effectAlpha applied.
    [[nodiscard]] QBrush background() const;

    PopupWidget *q = nullptr;
    QPointer<QWidget> baseWidget;
    QLabel *effectLabel = nullptr;
    QPropertyAnimation *fadeAnimation = nullptr;
    QPropertyAnimation *scrollAnimation = nullptr;
    PopupWidget::AnimationEffect animationEffect = PopupWidget::WindowOpacityFadeEffect;
    double effectAlpha = 0.7;
    uint effectDuration = 300;
    bool effectMadeTranslucent = false;
    /// One correction a show: a window manager that insists wins.
    bool mayCorrectPlace = false;
    Qt::Alignment alignment = Qt::AlignJustify | Qt::AlignBottom;
    Qt::Orientations orientation = Qt::Vertical;
    PopupWidget::VerticalDirection verticalDirection = PopupWidget::TopToBottom;
    Qt::LayoutDirection horizontalDirection = Qt::LeftToRight;

private:
    void prepareShow(const QRect &full);
    void prepareHide(const QRect &full);
    void makeTranslucent();
    void setScrollRange(const QRect &full) const;
    void refreshSnapshot() const;
    void activateBaseWindow() const;
    void runCurrentAnimation() const;
    [[nodiscard]] int horizontalPosition(const QRect &base, int width) const;
    [[nodiscard]] int verticalPosition(const QRect &base, int height) const;
};
