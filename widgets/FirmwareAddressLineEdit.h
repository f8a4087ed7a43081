#pragma once

#include "widgets/FancyLineEdit.h"

/// Takes the load address of a firmware: hexadecimal digits, without the "0x" in front of them.
///
/// The clipboard carries the address with its "0x". This holds for the copy, cut and paste keys,
/// which work on the whole field; whatever else copies or pastes goes a line edit's ordinary way.
class FirmwareAddressLineEdit final : public FancyLineEdit
{
    Q_OBJECT
    Q_DISABLE_COPY_MOVE(FirmwareAddressLineEdit)

public:
    explicit FirmwareAddressLineEdit(QWidget *parent = nullptr);

signals:
    /// A pasted text is no address. The field is as it was.
    void errorOccurred(const QString &message);

protected:
    void keyPressEvent(QKeyEvent *event) override;

private:
    void copyAddress() const;
    void pasteAddress(const QString &prefixed);
    [[nodiscard]] bool isAcceptable(QString address) const;
};
