#pragma once

#include <QByteArray>
#include <QtEndian>
#include <QtGlobal>

/// Bytes of packages, put together by hand: what a test expects, or forges.
namespace wire {

/// The bytes written in @p text as hexadecimal digits; blanks do not count.
inline QByteArray hex(const char *text)
{
    return QByteArray::fromHex(QByteArray(text));
}

inline QByteArray u16(quint16 value)
{
    QByteArray bytes(sizeof(value), '\0');
    qToBigEndian(value, bytes.data());
    return bytes;
}

inline QByteArray u32(quint32 value)
{
    QByteArray bytes(sizeof(value), '\0');
    qToBigEndian(value, bytes.data());
    return bytes;
}

/// An entry that declares the length @p length, true or not.
inline QByteArray forged(quint32 tag, quint32 length, const QByteArray &payload)
{
    return u32(tag) + u32(length) + payload;
}

/// An entry that declares the length that it has.
inline QByteArray entry(quint32 tag, const QByteArray &payload)
{
    return forged(tag, static_cast<quint32>(payload.size()), payload);
}

/// CRC-16 after ISO 3309, bit by bit: an independent measure for the toolkit's.
inline quint16 crc(const QByteArray &bytes)
{
    quint32 remainder = 0xFFFF;
    for (const char byte : bytes) {
        remainder ^= static_cast<quint8>(byte);
        for (int bit = 0; bit < 8; ++bit) {
            remainder = (remainder & 1U) != 0 ? (remainder >> 1U) ^ 0x8408U : remainder >> 1U;
        }
    }
    return static_cast<quint16>(remainder ^ 0xFFFFU);
}

/// The package file around a compressed block, with the right checksum.
inline QByteArray envelope(const QByteArray &block)
{
    return hex("00 5A 45 4C") + u32(static_cast<quint32>(block.size())) + block + u16(crc(block));
}

} // namespace wire
