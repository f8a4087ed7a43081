#include "tlv/TlvField.h"

#include <QByteArray>
#include <QDataStream>
#include <QString>

#include <utility>

namespace tlv {

namespace {

// Makes the type known under its name before the first field is stored in a variant.
const int kFieldTypeId = qRegisterMetaType<TlvField>("tlv::TlvField");

} // namespace

TlvField::TlvField(quint32 tag, quint32 length, QVariant value)
    : m_tag(tag)
    , m_length(length)
    , m_value(std::move(value))
{
}

QDataStream &operator<<(QDataStream &stream, const TlvField &field)
{
    const QVariant value = field.value();
    const quint32 length = field.length();

    stream << field.tag();
    switch (value.userType()) {
    case QMetaType::Bool:
        return stream << length << value.toBool();
    case QMetaType::UChar:
        return stream << length << value.value<quint8>();
    case QMetaType::Short:
        return stream << length << value.value<qint16>();
    case QMetaType::UShort:
        return stream << length << value.value<quint16>();
    case QMetaType::Int:
    case QMetaType::Long:
        return stream << length << qint32{value.toInt()};
    case QMetaType::UInt:
        return stream << length << quint32{value.toUInt()};
    case QMetaType::LongLong:
        return stream << length << qint64{value.toLongLong()};
    case QMetaType::ULongLong:
        return stream << length << quint64{value.toULongLong()};
    case QMetaType::Float:
        return stream << length << value.toFloat();
    case QMetaType::Double:
        return stream << length << value.toDouble();
    case QMetaType::QString:
        return stream << value.toString();
    case QMetaType::QByteArray:
        return stream << value.toByteArray();
    default:
        const QByteArray text = value.toString().toUtf8();
        return stream.writeBytes(text.constData(), static_cast<uint>(text.size()));
    }
}

} // namespace tlv
