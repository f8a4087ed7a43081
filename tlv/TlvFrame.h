#pragma once

#include "tlv/TlvField.h"

#include <QByteArray>
#include <QList>
#include <QMetaType>
#include <QPair>
#include <QSharedPointer>
#include <QVector>

class QDataStream;
class QString;

namespace tlv {

/// An ordered container of tag-length-value entries. Copies share the entries.
class TlvFrame
{
public:
    /// A field and, once more, its tag.
    using Entry = QPair<quint32, QSharedPointer<TlvField>>;

    TlvFrame() = default;
    TlvFrame(const TlvFrame &) = default;
    TlvFrame(TlvFrame &&) = default;
    TlvFrame &operator=(const TlvFrame &) = default;
    TlvFrame &operator=(TlvFrame &&) = default;
    virtual ~TlvFrame() = default;

    /// Appends an entry and returns true. The same tag may be added more than once.
    bool addField(quint32 tag, quint32 length, const QVariant &value);

    /// Looks up the first entry with @p tag and stores its value, converted, in @p out.
    ///
    /// Returns false and leaves @p out alone when there is no such entry or its value cannot be
    /// converted. The 8-bit and 16-bit lookups keep the low bits of a larger number. A list of
    /// frames is converted only when each of its elements is a frame.
    bool getValue(quint32 tag, quint8 &out) const;
    bool getValue(quint32 tag, qint16 &out) const;
    bool getValue(quint32 tag, quint16 &out) const;
    bool getValue(quint32 tag, qint32 &out) const;
    bool getValue(quint32 tag, quint32 &out) const;
    bool getValue(quint32 tag, float &out) const;
    bool getValue(quint32 tag, double &out) const;
    bool getValue(quint32 tag, QString &out) const;
    bool getValue(quint32 tag, TlvFrame &out) const;
    bool getValue(quint32 tag, QList<TlvFrame> &out) const;

    /// The entries in the order in which they were added.
    [[nodiscard]] const QVector<Entry> &entries() const { return m_entries; }

private:
    QVector<Entry> m_entries;
};

/// Writes the entries of @p frame in order: nested frames and lists of frames with their declared
/// lengths and then their own entries, everything else as a leaf.
QDataStream &operator<<(QDataStream &stream, const TlvFrame &frame);

/// The bytes of an outermost @p frame: as the insertion above, and an entry whose value is a field
/// is written with its declared length and then that field as a leaf.
///
/// @p expectedSize, in bytes, spares the array from growing; it need not be right.
[[nodiscard]] QByteArray serializeFrame(const TlvFrame &frame, int expectedSize = 0);

} // namespace tlv

Q_DECLARE_METATYPE(tlv::TlvFrame)
