#pragma once

#include "widgets/PopupWidget_p.h"

#include <QEvent>

class QTimer;

/// Watches the application for the popup, and hides it when its time is over or the user turns
/// away.
///
/// The dynamic property "forcedClosed" of this object tells how the popup was last hidden without
/// being asked to: 0 = it was not, 1 = while fully shown, 2 = during its show animation.
class DrivenPopupWidgetPrivate : public PopupWidgetPrivate
{
    Q_OBJECT
    Q_DISABLE_COPY_MOVE(DrivenPopupWidgetPrivate)

public:
    DrivenPopupWidgetPrivate();
    ~DrivenPopupWidgetPrivate() override;

    void init() override;
    bool eventFilter(QObject *watched, QEvent *event) override;

    void startWatching();
    void stopWatching();
    void armHideDelay();
    /// Moves the popup to where its base widget is now.
    void followBaseWidget();

    uint hideDelayMsec = 7000;
    bool active = false;

private slots:
    /// Hides the popup because something happened, not because it was asked to. @p force skips
    /// the animation.
    void temporarilyHiddenOn(bool force = false);
    /// Brings back a popup that temporarilyHiddenOn() hid.
    void temporarilyHiddenOff();
    /// Hides the popup when neither its base widget's window nor a driven popup is active.
    void updateVisibility();
    void onApplicationDeactivate();

private:
    void watch(QWidget *widget, QEvent::Type type);
    [[nodiscard]] bool isExplicitlyHidden() const;

    QTimer *hideDelay = nullptr;
};
