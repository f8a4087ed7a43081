#include "tests/damage/SamplePackage.h"

#include "tests/tlv/Wire.h"

#include <algorithm>

namespace sample {

namespace {

constexpr int kIntegerLength = 4;

/// Puts the body together from top to bottom. All numbers are what they are in the file.
class Sketch final
{
public:
    /// An entry whose tag and length must be right.
    Sketch &frame(quint32 tag, quint32 length)
    {
        add(Part::Checked, wire::u32(tag), false);
        return add(Part::Checked, wire::u32(length), true);
    }
    /// An entry whose tag must be right and whose length is passed over.
    Sketch &looseFrame(quint32 tag, quint32 length)
    {
        add(Part::Checked, wire::u32(tag), false);
        return add(Part::PassedOver, wire::u32(length), true);
    }
    Sketch &key(quint32 tag, quint32 value)
    {
        looseFrame(tag, kIntegerLength);
        return add(Part::Content, wire::u32(value), false);
    }
    Sketch &text(quint32 tag, const QByteArray &value)
    {
        frame(tag, static_cast<quint32>(value.size()));
        return add(Part::Content, value, false);
    }
    /// Entries that are known by their position alone.
    Sketch &placedNumber(quint32 tag, quint32 value)
    {
        placed(tag, kIntegerLength);
        return add(Part::Content, wire::u32(value), false);
    }
    Sketch &placedBool(quint32 tag, bool value)
    {
        placed(tag, 1);
        return add(Part::Bool, QByteArray(1, value ? '\1' : '\0'), false);
    }
    Sketch &placedBytes(quint32 tag, const QByteArray &value)
    {
        add(Part::PassedOver, wire::u32(tag), false);
        add(Part::Checked, wire::u32(static_cast<quint32>(value.size())), true);
        return add(Part::Content, value, false);
    }

    [[nodiscard]] const std::vector<Piece> &pieces() const { return m_pieces; }

private:
    void placed(quint32 tag, quint32 length)
    {
        add(Part::PassedOver, wire::u32(tag), false);
        add(Part::PassedOver, wire::u32(length), true);
    }
    Sketch &add(Part part, const QByteArray &bytes, bool isLength)
    {
        m_pieces.push_back({part, bytes, isLength});
        return *this;
    }

    std::vector<Piece> m_pieces;
};

Sketch sketch()
{
    Sketch sketch;
    sketch.frame(0xF0000001, 356)
        .frame(0xF0000002, 188)
        .frame(0xF0000003, 30)
        .looseFrame(0xF0000004, 22)
        .key(0xF0000005, 0x07090002)
        .text(0xF0000006, "A*")
        .frame(0xF0000007, 52)
        .looseFrame(0xF0000008, 18)
        .text(0xF0000009, "B")
        .text(0xF000000A, "7")
        .looseFrame(0xF0000008, 18)
        .text(0xF0000009, "")
        .text(0xF000000A, "\xC3\xA4")
        .looseFrame(0xF000000B, 82)
        .looseFrame(0xF000000C, 33)
        .placedBool(0xF0000010, true)
        .placedNumber(0xF000000E, 0x00010004)
        .placedNumber(0xF000000F, 0x00050063)
        .looseFrame(0xF000000D, 33)
        .placedBool(0xF0000010, false)
        .placedNumber(0xF000000E, 0x00000000)
        .placedNumber(0xF000000F, 0x00630063)
        .frame(0xF0000011, 88)
        .frame(0xF0000012, 48)
        .placedNumber(0x50564552, 1)
        .placedNumber(0x4D485756, 2)
        .placedNumber(0x58485756, 7)
        .placedNumber(0x50485754, 4)
        .frame(0xF0000013, 24)
        .placedNumber(0x50414452, 0x80000000)
        .placedBytes(0x5042494E, wire::hex("7F 00 FF 0A"))
        .looseFrame(0xF0000014, 56)
        .placedNumber(0x5053495A, 4)
        .placedBytes(0xF0000015, "one.bin")
        .placedBytes(0xF0000016, "boards/new/../one.bin");
    return sketch;
}

} // namespace

const std::vector<Piece> &pieces()
{
    static const std::vector<Piece> all = sketch().pieces();
    return all;
}

QByteArray body()
{
    QByteArray bytes;
    for (const Piece &piece : pieces()) {
        bytes += piece.bytes;
    }
    return bytes;
}

QByteArray package()
{
    return wire::envelope(qCompress(body(), 9));
}

std::vector<LengthField> lengthFields()
{
    std::vector<LengthField> fields;
    int offset = 0;
    for (const Piece &piece : pieces()) {
        if (piece.isLength) {
            fields.push_back({offset, piece.part});
        }
        offset += piece.bytes.size();
    }
    return fields;
}

std::vector<int> sectionEnds()
{
    const QByteArray bytes = body();
    return {8, bytes.indexOf(wire::hex("F0 00 00 11")), bytes.indexOf(wire::hex("F0 00 00 14")),
            bytes.size()};
}

std::vector<Change> byteChanges(const QByteArray &bytes)
{
    std::vector<Change> changes;
    for (int offset = 0; offset < bytes.size(); ++offset) {
        const auto original = static_cast<quint8>(bytes.at(offset));
        std::vector<int> values = {0x00, 0xFF};
        for (int bit = 0; bit < 8; ++bit) {
            values.push_back(original ^ (1 << bit));
        }
        for (const int value : values) {
            if (value != original) {
                QByteArray changed = bytes;
                changed[offset] = static_cast<char>(value);
                changes.push_back({offset, changed});
            }
        }
    }
    return changes;
}

QByteArray exchanged(const QByteArray &bytes, int left, int right)
{
    QByteArray changed = bytes;
    changed.replace(left, kIntegerLength, bytes.mid(right, kIntegerLength));
    changed.replace(right, kIntegerLength, bytes.mid(left, kIntegerLength));
    return changed;
}

} // namespace sample
