#pragma once

#include "common/Scale.h"
#include "widgets/DrivenPopupWidget_p.h"

class MessageLabel;
class QHBoxLayout;
class QTimer;
class QWindow;

/// The frame and the label of a message, and how they are styled and measured.
class MessagePopupWidgetPrivate : public DrivenPopupWidgetPrivate
{
    Q_OBJECT
    Q_DISABLE_COPY_MOVE(MessagePopupWidgetPrivate)

public:
    MessagePopupWidgetPrivate();
    ~MessagePopupWidgetPrivate() override;

    void init() override;
    bool eventFilter(QObject *watched, QEvent *event) override;
    void setAlignment(Qt::Alignment newAlignment) override;
    void setMargin(Qt::Alignment sides) const;

    void showMessage(const QString &text, int type);
    /// Drops a message that has not appeared yet.
    void cancelMessage();
    /// Lets the label break lines that are wider than the base widget.
    void fitToBaseWidget();

    QFrame *frame = nullptr;
    MessageLabel *label = nullptr;
    QHBoxLayout *outerLayout = nullptr;
    Scale scale{96.0};
    /// Delays the show until the popup has been measured.
    QTimer *showDelay = nullptr;
    /// The base widget's window, while a message waits for it to get onto the screen.
    QPointer<QWindow> awaitedWindow;
    /// How often the show may still be put off because the display is behind.
    int showRetries = 0;

private:
    void applyStyle(int type) const;
    void measure();
    /// Shows the popup, but not before the base widget's window is on the screen: until then it may
    /// still be moved by the window manager, which would hide the popup unseen.
    void showOnScreen();
    /// True while the display has not yet carried out the hide that a new message began with:
    /// showing the popup again would come too early for it.
    [[nodiscard]] bool isBeingUnmapped() const;
    void stopWaiting();
    void activateLayouts();
    [[nodiscard]] int widestLine() const;
};
