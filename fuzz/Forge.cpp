#include "fuzz/Forge.h"

#include "tests/tlv/Wire.h"

#include <algorithm>

namespace fuzz {

namespace {

constexpr int kLargestStoredBlock = 0xFFFF;

/// The checksum of a zlib stream.
quint32 adler32(const QByteArray &bytes)
{
    constexpr quint32 kModulus = 65521;
    quint32 low = 1;
    quint32 high = 0;
    for (const char byte : bytes) {
        low = (low + static_cast<quint8>(byte)) % kModulus;
        high = (high + low) % kModulus;
    }
    return (high << 16U) | low;
}

void appendLittleEndian(QByteArray &bytes, int value)
{
    bytes.append(static_cast<char>(value & 0xFF));
    bytes.append(static_cast<char>((value >> 8) & 0xFF));
}

} // namespace

QByteArray storedStream(const QByteArray &body)
{
    QByteArray stream = wire::hex("78 01");
    int position = 0;
    do {
        const int length = std::min(body.size() - position, kLargestStoredBlock);
        stream.append(position + length == body.size() ? '\1' : '\0');
        appendLittleEndian(stream, length);
        appendLittleEndian(stream, ~length);
        stream.append(body.constData() + position, length);
        position += length;
    } while (position < body.size());
    return stream + wire::u32(adler32(body));
}

QByteArray envelope(const QByteArray &block)
{
    const quint16 checksum = qChecksum(block.constData(), static_cast<uint>(block.size()));
    return wire::hex("00 5A 45 4C") + wire::u32(static_cast<quint32>(block.size())) + block
           + wire::u16(checksum);
}

QByteArray quickSeal(const QByteArray &body)
{
    return envelope(wire::u32(static_cast<quint32>(body.size())) + storedStream(body));
}

} // namespace fuzz
