#pragma once

#include <QMetaType>
#include <QVariant>

class QDataStream;

namespace tlv {

/// One tag-length-value entry: a tag, a declared payload length and a typed value.
///
/// The length is what the creator declares, in bytes; it is never computed from the value.
class TlvField
{
public:
    TlvField() = default;
    TlvField(quint32 tag, quint32 length, QVariant value);
    TlvField(const TlvField &) = default;
    TlvField(TlvField &&) = default;
    TlvField &operator=(const TlvField &) = default;
    TlvField &operator=(TlvField &&) = default;
    virtual ~TlvField() = default;

    [[nodiscard]] quint32 tag() const { return m_tag; }
    [[nodiscard]] quint32 length() const { return m_length; }
    [[nodiscard]] QVariant value() const { return m_value; }

private:
    quint32 m_tag = 0;
    quint32 m_length = 0;
    QVariant m_value;
};

/// Writes @p field as a leaf: its tag, a 32-bit count and the payload that its value's type calls
/// for, all big-endian.
///
/// The count is the declared length, except for texts, byte arrays and types without a form of
/// their own: these are written with the byte count that they have. A null text or byte array has
/// the count 0xFFFFFFFF.
QDataStream &operator<<(QDataStream &stream, const TlvField &field);

} // namespace tlv

Q_DECLARE_METATYPE(tlv::TlvField)
