#include "widgets/FirmwareAddressLineEdit.h"

#include <QClipboard>
#include <QGuiApplication>
#include <QKeyEvent>
#include <QStringList>
#include <QValidator>

#include <algorithm>

namespace {

const QLatin1String kPrefix("0x");

bool isBlank(const QString &text)
{
    return std::all_of(text.begin(), text.end(), [](QChar character) {
        return character == QLatin1Char(' ') || character == QLatin1Char('\t');
    });
}

/// The first part of @p prefixed that is not blank when the text is split at every prefix; empty
/// when there is none.
QString firstAddress(const QString &prefixed)
{
    const QStringList parts = prefixed.split(kPrefix);
    const auto part = std::find_if_not(parts.begin(), parts.end(), isBlank);
    return part == parts.end() ? QString() : *part;
}

} // namespace

FirmwareAddressLineEdit::FirmwareAddressLineEdit(QWidget *parent)
    : FancyLineEdit(parent)
{
}

void FirmwareAddressLineEdit::keyPressEvent(QKeyEvent *event)
{
    if (event->matches(QKeySequence::Copy)) {
        copyAddress();
        return;
    }
    if (event->matches(QKeySequence::Cut) && !isReadOnly()) {
        copyAddress();
        clear();
        return;
    }
    if (event->matches(QKeySequence::Paste) && !isReadOnly()) {
        const QString text = QGuiApplication::clipboard()->text();
        if (text.startsWith(kPrefix)) {
            pasteAddress(text);
            return;
        }
    }
    FancyLineEdit::keyPressEvent(event);
}

void FirmwareAddressLineEdit::copyAddress() const
{
    const QString address = text();
    QGuiApplication::clipboard()->setText(address.startsWith(kPrefix) ? address
                                                                      : kPrefix + address);
}

void FirmwareAddressLineEdit::pasteAddress(const QString &prefixed)
{
    const QString address = firstAddress(prefixed);
    if (address.isEmpty() || !isAcceptable(address)) {
        emit errorOccurred(tr("Firmware address is not valid."));
        return;
    }
    // Not setText(), which would forget what the user can undo.
    selectAll();
    insert(address);
}

bool FirmwareAddressLineEdit::isAcceptable(QString address) const
{
    int position = 0;
    return validator() == nullptr
           || validator()->validate(address, position) == QValidator::Acceptable;
}
