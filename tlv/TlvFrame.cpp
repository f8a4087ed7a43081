#include "tlv/TlvFrame.h"

#include <QDataStream>
#include <QIODevice>
#include <QLatin1String>
#include <QString>
#include <QVariant>
#include <QVariantList>

#include <algorithm>

namespace tlv {

namespace {

// Makes the type known under its name before the first frame is stored in a variant.
const int kFrameTypeId = qRegisterMetaType<TlvFrame>("tlv::TlvFrame");

/// The value of the first entry with @p tag; invalid when there is none.
QVariant firstValue(const QVector<TlvFrame::Entry> &entries, quint32 tag)
{
    const auto entry = std::find_if(entries.cbegin(), entries.cend(),
                                    [tag](const TlvFrame::Entry &e) { return e.first == tag; });
    return entry == entries.cend() ? QVariant() : entry->second->value();
}

/// Stores the number that @p convert makes of @p value in @p out, cut to the width of @p out.
template <typename Wide, typename Narrow>
bool storeNumber(const QVariant &value, Wide (QVariant::*convert)(bool *) const, Narrow &out)
{
    bool converted = false;
    const Wide number = (value.*convert)(&converted);
    if (converted) {
        out = static_cast<Narrow>(number);
    }
    return converted;
}

/// Writes what nested and outermost frames have in common.
void writeEntry(QDataStream &stream, const TlvField &field)
{
    const QVariant value = field.value();
    const QLatin1String typeName(value.typeName());
    if (typeName == QLatin1String("tlv::TlvFrame")) {
        stream << field.tag() << field.length() << value.value<TlvFrame>();
    } else if (typeName == QLatin1String("QVariantList")) {
        stream << field.tag() << field.length();
        const QVariantList elements = value.toList();
        for (const QVariant &element : elements) {
            stream << element.value<TlvFrame>();
        }
    } else {
        stream << field;
    }
}

} // namespace

bool TlvFrame::addField(quint32 tag, quint32 length, const QVariant &value)
{
    m_entries.append({tag, QSharedPointer<TlvField>::create(tag, length, value)});
    return true;
}

bool TlvFrame::getValue(quint32 tag, quint8 &out) const
{
    return storeNumber(firstValue(m_entries, tag), &QVariant::toUInt, out);
}

bool TlvFrame::getValue(quint32 tag, qint16 &out) const
{
    return storeNumber(firstValue(m_entries, tag), &QVariant::toInt, out);
}

bool TlvFrame::getValue(quint32 tag, quint16 &out) const
{
    return storeNumber(firstValue(m_entries, tag), &QVariant::toUInt, out);
}

bool TlvFrame::getValue(quint32 tag, qint32 &out) const
{
    return storeNumber(firstValue(m_entries, tag), &QVariant::toInt, out);
}

bool TlvFrame::getValue(quint32 tag, quint32 &out) const
{
    return storeNumber(firstValue(m_entries, tag), &QVariant::toUInt, out);
}

bool TlvFrame::getValue(quint32 tag, float &out) const
{
    return storeNumber(firstValue(m_entries, tag), &QVariant::toFloat, out);
}

bool TlvFrame::getValue(quint32 tag, double &out) const
{
    return storeNumber(firstValue(m_entries, tag), &QVariant::toDouble, out);
}

bool TlvFrame::getValue(quint32 tag, QString &out) const
{
    const QVariant value = firstValue(m_entries, tag);
    if (!value.canConvert<QString>()) {
        return false;
    }
    out = value.toString();
    return true;
}

bool TlvFrame::getValue(quint32 tag, TlvFrame &out) const
{
    const QVariant value = firstValue(m_entries, tag);
    if (!value.canConvert<TlvFrame>()) {
        return false;
    }
    out = value.value<TlvFrame>();
    return true;
}

bool TlvFrame::getValue(quint32 tag, QList<TlvFrame> &out) const
{
    const QVariant value = firstValue(m_entries, tag);
    if (!value.canConvert<QVariantList>()) {
        return false;
    }
    QList<TlvFrame> frames;
    const QVariantList elements = value.toList();
    for (const QVariant &element : elements) {
        if (!element.canConvert<TlvFrame>()) {
            return false;
        }
        frames.append(element.value<TlvFrame>());
    }
    out = frames;
    return true;
}

QDataStream &operator<<(QDataStream &stream, const TlvFrame &frame)
{
    for (const TlvFrame::Entry &entry : frame.entries()) {
        writeEntry(stream, *entry.second);
    }
    return stream;
}

QByteArray serializeFrame(const TlvFrame &frame, int expectedSize)
{
    QByteArray bytes;
    bytes.reserve(expectedSize);
    QDataStream stream(&bytes, QIODevice::WriteOnly);
    for (const TlvFrame::Entry &entry : frame.entries()) {
        const TlvField &field = *entry.second;
        const QVariant value = field.value();
        if (QLatin1String(value.typeName()) == QLatin1String("tlv::TlvField")) {
            stream << field.tag() << field.length() << value.value<TlvField>();
        } else {
            writeEntry(stream, field);
        }
    }
    return bytes;
}

} // namespace tlv
