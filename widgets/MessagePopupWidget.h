#pragma once

#include "widgets/DrivenPopupWidget.h"

class MessagePopupWidgetPrivate;

/// A driven popup that shows one message, styled as an error or as information.
class MessagePopupWidget : public DrivenPopupWidget
{
    Q_OBJECT
    Q_DISABLE_COPY_MOVE(MessagePopupWidget)

public:
    /// How a message looks. Passed as a plain integer.
    enum MessageType { Error = 0, Info = 1 };

    /// Creates a hidden popup. @p baseWidget, which may be null, is also its parent.
    explicit MessagePopupWidget(QWidget *baseWidget = nullptr);
    ~MessagePopupWidget() override;

    /// Shows @p text, as plain text, in place of the message shown before. The popup appears
    /// 30 ms after the last call. @p type is a MessageType; any other value shows the text
    /// without colours.
    void showMessage(const QString &text, int type);

    /// The full text of the last message.
    [[nodiscard]] QString message() const;

    /// Sets the layout's margins on the sides that @p alignment names.
    void setMargin(Qt::Alignment alignment);

public slots:
    /// Also drops a message that has not appeared yet.
    void hidePopup() override;
    void showPopup() override;

public:
    using DrivenPopupWidget::showPopup;

private:
    [[nodiscard]] MessagePopupWidgetPrivate *messagePrivate() const;
};
