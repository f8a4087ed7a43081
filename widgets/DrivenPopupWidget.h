#pragma once

#include "widgets/PopupWidget.h"

class DrivenPopupWidgetPrivate;

/// A popup tied to its base widget: it follows it, hides by itself after a delay, on a mouse press
/// anywhere in the application, and when the user turns to another window or application.
class DrivenPopupWidget : public PopupWidget
{
    Q_OBJECT
    Q_DISABLE_COPY_MOVE(DrivenPopupWidget)
    Q_PROPERTY(bool active READ isActive)
    Q_PROPERTY(uint hideDelayMsec READ hideDelayMsec WRITE setHideDelayMsec)

public:
    /// Creates a hidden popup. @p baseWidget, which may be null, is also its parent.
    explicit DrivenPopupWidget(QWidget *baseWidget = nullptr);
    ~DrivenPopupWidget() override;

    /// True from showPopup() until a hide: the popup watches its base widget and the application.
    [[nodiscard]] bool isActive() const;

    /// How long the popup stays, in milliseconds, counted from the last showPopup().
    [[nodiscard]] uint hideDelayMsec() const;
    /// Takes effect on the next showPopup(). 0 is ignored.
    void setHideDelayMsec(uint milliseconds);

    /// A popup that is active goes on to watch the new base widget.
    void setBaseWidget(QWidget *baseWidget) override;

    bool eventFilter(QObject *watched, QEvent *event) override;

public slots:
    void hidePopup() override;
    void showPopup() override;

public:
    using PopupWidget::showPopup;

protected:
    DrivenPopupWidget(DrivenPopupWidgetPrivate &priv, QWidget *baseWidget);

private:
    [[nodiscard]] DrivenPopupWidgetPrivate *driven() const;
};
