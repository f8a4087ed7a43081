#pragma once

#include "common/Scale.h"
#include "widgets/DrivenPopupWidget_p.h"

class MessageLabel;
class QHBoxLayout;
class QTimer;

/// The frame and the label of a message, and how they are styled and measured.
class MessagePopupWidgetPrivate : public DrivenPopupWidgetPrivate
{
    Q_OBJECT
    Q_DISABLE_COPY_MOVE(MessagePopupWidgetPrivate)

public:
    MessagePopupWidgetPrivate();
    ~MessagePopupWidgetPrivate() override;

    void init() override;
    void setAlignment(Qt::Alignment newAlignment) override;
    void setMargin(Qt::Alignment sides);

    void showMessage(const QString &text, int type);
    /// Lets the label break lines that are wider than the base widget.
    void fitToBaseWidget();

    QFrame *frame = nullptr;
    MessageLabel *label = nullptr;
    QHBoxLayout *outerLayout = nullptr;
    Scale scale{96.0};
    /// Delays the show until the popup has been measured.
    QTimer *showDelay = nullptr;

private:
    void applyStyle(int type);
    void measure();
    void activateLayouts();
    [[nodiscard]] int widestLine() const;
};
