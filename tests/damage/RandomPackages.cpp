#include "tests/damage/RandomPackages.h"

#include "fuzz/Forge.h"
#include "fuzz/TlvTree.h"
#include "tests/tlv/Wire.h"

namespace {

constexpr quint32 kNullCount = 0xFFFFFFFF;
constexpr int kBlockHeaderLength = 4;

} // namespace

RandomPackages::RandomPackages(quint32 seed)
    : m_random(seed)
{
}

QByteArray RandomPackages::next()
{
    QByteArray content = body();
    if (oneIn(4)) {
        content = damagedTree(content);
    } else if (oneIn(8)) {
        content = damaged(content);
    }
    QByteArray compressed = block(content);
    if (oneIn(16)) {
        compressed = damaged(compressed);
    }
    QByteArray package = fuzz::envelope(compressed);
    if (oneIn(8)) {
        package[0] = static_cast<char>(below(256));
    }
    if (oneIn(16)) {
        package += text();
    }
    return oneIn(16) ? damaged(package) : package;
}

QByteArray RandomPackages::body()
{
    QByteArray sections;
    for (quint32 count = below(5); count > 0; --count) {
        switch (below(3)) {
        case 0:
            sections += rulesSection();
            break;
        case 1:
            sections += hardwareSection();
            break;
        default:
            sections += firmwareFileSection();
            break;
        }
    }
    return wire::entry(0xF0000001, sections);
}

QByteArray RandomPackages::rulesSection()
{
    QByteArray masks;
    for (quint32 count = below(4); count > 0; --count) {
        masks += maskRule();
    }
    QByteArray tokens;
    for (quint32 count = below(4); count > 0; --count) {
        tokens += tokenRule();
    }
    const QByteArray options = looseEntry(0xF000000B, option(0xF000000C) + option(0xF000000D));
    return wire::entry(0xF0000002,
                       wire::entry(0xF0000003, masks) + wire::entry(0xF0000007, tokens) + options);
}

QByteArray RandomPackages::maskRule()
{
    return looseEntry(0xF0000004,
                      looseEntry(0xF0000005, integer()) + bytesEntry(0xF0000006, text()));
}

QByteArray RandomPackages::tokenRule()
{
    return looseEntry(0xF0000008, bytesEntry(0xF0000009, text()) + bytesEntry(0xF000000A, text()));
}

QByteArray RandomPackages::option(quint32 tag)
{
    const char enabled = static_cast<char>(oneIn(4) ? below(256) : below(2));
    return looseEntry(tag, looseEntry(looseTag(0xF0000010), QByteArray(1, enabled))
                               + looseEntry(looseTag(0xF000000E), integer())
                               + looseEntry(looseTag(0xF000000F), integer()));
}

QByteArray RandomPackages::hardwareSection()
{
    QByteArray hardware;
    for (const quint32 tag : {0x50564552U, 0x4D485756U, 0x58485756U, 0x50485754U}) {
        hardware += looseEntry(looseTag(tag), integer());
    }
    // A null image is as long as an empty one: its count takes the place of its bytes.
    const QByteArray firmware =
        looseEntry(looseTag(0x50414452), integer()) + bytesEntry(looseTag(0x5042494E), text());
    return wire::entry(0xF0000011,
                       wire::entry(0xF0000012, hardware) + wire::entry(0xF0000013, firmware));
}

QByteArray RandomPackages::firmwareFileSection()
{
    return looseEntry(0xF0000014, looseEntry(looseTag(0x5053495A), integer())
                                      + bytesEntry(looseTag(0xF0000015), text())
                                      + bytesEntry(looseTag(0xF0000016), text()));
}

QByteArray RandomPackages::bytesEntry(quint32 tag, const QByteArray &value)
{
    return oneIn(10) ? wire::forged(tag, kNullCount, {}) : wire::entry(tag, value);
}

/// An entry whose length is passed over, and so is wrong at times.
QByteArray RandomPackages::looseEntry(quint32 tag, const QByteArray &payload)
{
    return oneIn(10) ? wire::forged(tag, any(), payload) : wire::entry(tag, payload);
}

QByteArray RandomPackages::text()
{
    QByteArray bytes(static_cast<int>(below(oneIn(16) ? 400 : 12)), '\0');
    for (char &byte : bytes) {
        byte = static_cast<char>(below(256));
    }
    return bytes;
}

QByteArray RandomPackages::integer()
{
    return wire::u32(oneIn(2) ? below(100) : any());
}

/// The tag of an entry that is known by its place, and so may have any other.
quint32 RandomPackages::looseTag(quint32 tag)
{
    return oneIn(10) ? any() : tag;
}

QByteArray RandomPackages::block(const QByteArray &body)
{
    const QByteArray stream = oneIn(2) ? fuzz::storedStream(body)
                                       : qCompress(body, oneIn(8) ? 9 : 1).mid(kBlockHeaderLength);
    auto claim = static_cast<quint32>(body.size());
    if (oneIn(8)) {
        // On both sides of the most that the stream can make.
        claim = below(static_cast<quint32>(stream.size()) * 2000 + 1);
    }
    return wire::u32(claim) + stream + (oneIn(16) ? text() : QByteArray());
}

QByteArray RandomPackages::damaged(QByteArray bytes)
{
    const auto offset = static_cast<int>(below(static_cast<quint32>(bytes.size())));
    switch (below(4)) {
    case 0:
        return bytes.left(offset);
    case 1:
        return bytes.remove(offset, 1 + static_cast<int>(below(8)));
    case 2:
        return bytes.insert(offset, text());
    default:
        bytes[offset] = static_cast<char>(below(256));
        return bytes;
    }
}

QByteArray RandomPackages::damagedTree(const QByteArray &body)
{
    std::minstd_rand random(any());
    fuzz::TlvTree tree(body);
    for (quint32 changes = 1 + below(3); changes > 0; --changes) {
        tree.mutate(random, [this](const QByteArray &value) {
            return value.isEmpty() ? text() : damaged(value);
        });
    }
    return tree.bytes();
}
