#include "tlv/PackageEnvelope_p.h"

#include <QDataStream>
#include <QIODevice>
#include <QLatin1String>
#include <QLoggingCategory>
#include <QtEndian>

#include <limits>

namespace tlv {

namespace {

constexpr qint32 kMagic = 0x005A454C;
constexpr int kMagicLength = sizeof(kMagic);
constexpr int kCompressionLevel = 9;

/// A block begins with the byte count of what it holds.
constexpr int kBlockHeaderLength = sizeof(quint32);
/// A byte of a deflate stream makes at most this many: four times the longest match, 258, as a
/// match takes two bits at least.
constexpr quint64 kLargestExpansion = 1032;
/// Leaves room for the bookkeeping of the byte array that holds a block.
constexpr qint64 kLargestBlock = std::numeric_limits<int>::max() - 64;

/// Keeps the toolkit's warnings from being printed while it lives.
class WarningMute final
{
    Q_DISABLE_COPY_MOVE(WarningMute)

public:
    WarningMute()
        : m_category(QLoggingCategory::defaultCategory())
        , m_wasEnabled(m_category->isWarningEnabled())
    {
        m_category->setEnabled(QtWarningMsg, false);
    }
    ~WarningMute() { m_category->setEnabled(QtWarningMsg, m_wasEnabled); }

private:
    QLoggingCategory *m_category;
    bool m_wasEnabled;
};

/// The checksum over a compressed block: CRC-16 after ISO 3309.
quint16 checksumOf(const QByteArray &block)
{
    return qChecksum(block.constData(), static_cast<uint>(block.size()));
}

/// Reads the magic. Deliberately, its first byte may have any value.
bool readMagic(QDataStream &stream)
{
    char magic[kMagicLength] = {};
    return stream.readRawData(magic, kMagicLength) == kMagicLength
           && QLatin1String(magic + 1, kMagicLength - 1) == QLatin1String("ZEL");
}

/// Reads a count and that many bytes; an empty array when @p device holds fewer.
QByteArray readBlock(QDataStream &stream, const QIODevice &device)
{
    quint32 count = 0;
    stream >> count;
    if (count > device.bytesAvailable() || count > kLargestBlock) {
        return {};
    }
    const auto length = static_cast<int>(count);
    QByteArray block(length, Qt::Uninitialized);
    return stream.readRawData(block.data(), length) == length ? block : QByteArray();
}

bool readChecksum(QDataStream &stream, quint16 expected)
{
    quint16 checksum = 0;
    stream >> checksum;
    return stream.status() == QDataStream::Ok && checksum == expected;
}

/// What @p block holds; empty when it is damaged, or claims to hold more than any block of its size
/// can, as memory is set aside for the claim. A claim that is wrong but possible is let pass.
QByteArray expanded(const QByteArray &block)
{
    if (block.size() <= kBlockHeaderLength) {
        return {};
    }
    const auto claimed = qFromBigEndian<quint32>(block.constData());
    const auto deflated = static_cast<quint64>(block.size() - kBlockHeaderLength);
    if (claimed > deflated * kLargestExpansion) {
        return {};
    }
    // qUncompress() prints a warning for damaged data; the caller reports it to the user instead.
    const WarningMute mute;
    return qUncompress(block);
}

} // namespace

QByteArray seal(QByteArray body)
{
    QByteArray block = qCompress(body, kCompressionLevel);
    body.clear();

    QByteArray header;
    QDataStream(&header, QIODevice::WriteOnly) << kMagic << static_cast<quint32>(block.size());
    QByteArray trailer;
    QDataStream(&trailer, QIODevice::WriteOnly) << checksumOf(block);
    // The envelope grows around the block, which may be large, instead of taking a copy of it.
    return block.prepend(header).append(trailer);
}

QByteArray unseal(QIODevice &device)
{
    QDataStream stream(&device);
    if (!readMagic(stream)) {
        return {};
    }
    const QByteArray block = readBlock(stream, device);
    if (!readChecksum(stream, checksumOf(block))) {
        return {};
    }
    return expanded(block);
}

} // namespace tlv
