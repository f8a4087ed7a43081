#include "tlv/PackageBody_p.h"

#include "tlv/PackageRecord.h"
#include "tlv/PackageTags.h"

#include <QByteArray>
#include <QtEndian>

#include <optional>
#include <utility>

namespace tlv {

namespace {

/// The count that stands for a null byte array.
constexpr quint32 kNullCount = 0xFFFFFFFF;

/// Where a byte array lies in a body.
struct Slice
{
    int position = 0;
    int size = 0;
};

/// Tag and length of an entry.
struct Header
{
    quint32 tag;
    quint32 length;
};

/// Walks through a body. What lies past its end reads as 0 and nothing, is remembered, and leaves
/// the walk at the end.
class BodyReader final
{
public:
    explicit BodyReader(const QByteArray &body)
        : m_body(body)
    {
    }

    [[nodiscard]] bool atEnd() const { return m_position == m_body.size(); }
    [[nodiscard]] bool hasReadPastEnd() const { return m_hasReadPastEnd; }
    [[nodiscard]] quint32 position() const { return static_cast<quint32>(m_position); }

    quint32 readInteger()
    {
        const char *const bytes = take(kIntegerLength);
        return bytes == nullptr ? 0 : qFromBigEndian<quint32>(bytes);
    }

    bool readBool()
    {
        const char *const byte = take(kBoolLength);
        return byte != nullptr && *byte != 0;
    }

    Header readHeader()
    {
        const quint32 tag = readInteger();
        return {tag, readInteger()};
    }

    /// The value of an integer entry at its place, whatever its tag and length.
    quint32 readIntegerEntry()
    {
        readHeader();
        return readInteger();
    }

    /// The value of a bool entry at its place, whatever its tag and length.
    bool readBoolEntry()
    {
        readHeader();
        return readBool();
    }

    /// Where the bytes lie that a count announces; the null form is an empty array.
    Slice readSlice()
    {
        const quint32 count = readInteger();
        if (count == kNullCount || take(count) == nullptr) {
            return {};
        }
        const auto size = static_cast<int>(count);
        return {m_position - size, size};
    }

    /// A count and that many bytes.
    QByteArray readBytes()
    {
        const Slice slice = readSlice();
        return {m_body.constData() + slice.position, slice.size};
    }

    /// Where the value of a byte array entry at its place lies, whatever its tag.
    Slice readSliceEntry()
    {
        readInteger();
        return readSlice();
    }

    /// The value of a byte array entry at its place, whatever its tag.
    QByteArray readBytesEntry()
    {
        readInteger();
        return readBytes();
    }

private:
    /// Passes over @p count bytes and points at them; at nothing when there are fewer.
    const char *take(quint32 count)
    {
        if (count > static_cast<quint32>(m_body.size() - m_position)) {
            m_position = m_body.size();
            m_hasReadPastEnd = true;
            return nullptr;
        }
        const char *const bytes = m_body.constData() + m_position;
        m_position += static_cast<int>(count);
        return bytes;
    }

    const QByteArray &m_body;
    int m_position = 0;
    bool m_hasReadPastEnd = false;
};

quint16 highHalf(quint32 value)
{
    return static_cast<quint16>(value >> 16);
}

quint16 lowHalf(quint32 value)
{
    return static_cast<quint16>(value);
}

SoftwareVersion readVersionEntry(BodyReader &reader)
{
    const quint32 version = reader.readIntegerEntry();
    return {highHalf(version), lowHalf(version)};
}

/// Reads the children of a rule, each of which must be in its place.
bool readRule(BodyReader &reader, MaskValidationRule &rule)
{
    if (reader.readHeader().tag != kMaskKeyTag) {
        return false;
    }
    const quint32 key = reader.readInteger();
    rule.parameter = highHalf(key);
    rule.index = lowHalf(key);
    if (reader.readInteger() != kMaskTag) {
        return false;
    }
    rule.mask = reader.readBytes();
    return true;
}

bool readRule(BodyReader &reader, TokenValidationRule &rule)
{
    if (reader.readInteger() != kTokenTag) {
        return false;
    }
    rule.token = reader.readBytes();
    if (reader.readInteger() != kTokenValueTag) {
        return false;
    }
    rule.value = reader.readBytes();
    return true;
}

template <typename Rule>
ParseResult parseRules(BodyReader &reader, quint32 listTag, quint32 ruleTag, QList<Rule> &rules)
{
    const Header list = reader.readHeader();
    if (list.tag != listTag) {
        return ParseResult::MissingTag;
    }
    const quint32 start = reader.position();
    while (reader.position() - start < list.length) {
        Rule rule;
        if (reader.readHeader().tag != ruleTag || !readRule(reader, rule)) {
            return ParseResult::MissingTag;
        }
        rules.append(rule);
    }
    return reader.position() - start == list.length ? ParseResult::Success
                                                    : ParseResult::LengthMismatch;
}

ParseResult parseOption(BodyReader &reader, quint32 optionTag, bool &enabled,
                        SoftwareVersion &minimum, SoftwareVersion &maximum)
{
    if (reader.readHeader().tag != optionTag) {
        return ParseResult::MissingTag;
    }
    enabled = reader.readBoolEntry();
    minimum = readVersionEntry(reader);
    maximum = readVersionEntry(reader);
    return ParseResult::Success;
}

ParseResult parseSoftwareOptions(BodyReader &reader, SoftwareOptions &options)
{
    if (reader.readHeader().tag != kSoftwareOptionsTag) {
        return ParseResult::MissingTag;
    }
    const ParseResult result = parseOption(reader, kOptionATag, options.optionAEnabled,
                                           options.optionAMinimum, options.optionAMaximum);
    if (result != ParseResult::Success) {
        return result;
    }
    return parseOption(reader, kOptionBTag, options.optionBEnabled, options.optionBMinimum,
                       options.optionBMaximum);
}

ParseResult parseRulesSection(BodyReader &reader, PackageRecord &record)
{
    const quint32 length = reader.readInteger();
    const quint32 start = reader.position();
    ParseResult result = parseRules(reader, kMaskRuleListTag, kMaskRuleTag, record.maskRules);
    if (result == ParseResult::Success) {
        result = parseRules(reader, kTokenRuleListTag, kTokenRuleTag, record.tokenRules);
    }
    if (result == ParseResult::Success) {
        result = parseSoftwareOptions(reader, record.softwareOptions);
    }
    if (result == ParseResult::Success && reader.position() - start != length) {
        result = ParseResult::LengthMismatch;
    }
    return result;
}

ParseResult parseHardwareSection(BodyReader &reader, PackageRecord &record,
                                 std::optional<Slice> &image)
{
    const quint32 length = reader.readInteger();

    const Header hardware = reader.readHeader();
    if (hardware.tag != kHardwareTag) {
        return ParseResult::MissingTag;
    }
    record.layoutVersion = reader.readIntegerEntry();
    record.minimumHardwareVersion = reader.readIntegerEntry();
    record.maximumHardwareVersion = reader.readIntegerEntry();
    record.hardwareType = reader.readIntegerEntry();
    if (hardware.length != kHardwareLength) {
        return ParseResult::LengthMismatch;
    }

    const Header firmware = reader.readHeader();
    if (firmware.tag != kFirmwareTag) {
        return ParseResult::MissingTag;
    }
    record.firmwareAddress = reader.readIntegerEntry();
    image = reader.readSliceEntry();
    const auto imageLength = static_cast<quint32>(image->size);
    if (firmware.length != firmwareLength(imageLength)
        || length != hardwareSectionLength(imageLength)) {
        return ParseResult::LengthMismatch;
    }
    return ParseResult::Success;
}

void readFirmwareFileSection(BodyReader &reader, PackageRecord &record)
{
    reader.readInteger(); // Deliberate: this section's length is not looked at.
    record.firmwareSize = reader.readIntegerEntry();
    record.firmwareFileName = reader.readBytesEntry();
    record.firmwareFilePath = reader.readBytesEntry();
}

ParseResult parseSection(BodyReader &reader, PackageRecord &record, std::optional<Slice> &image)
{
    switch (reader.readInteger()) {
    case kRulesSectionTag:
        return parseRulesSection(reader, record);
    case kHardwareSectionTag:
        return parseHardwareSection(reader, record, image);
    case kFirmwareFileSectionTag:
        readFirmwareFileSection(reader, record);
        return ParseResult::Success;
    default:
        return ParseResult::UnknownSection;
    }
}

ParseResult parsePackage(const QByteArray &body, PackageRecord &record, std::optional<Slice> &image)
{
    BodyReader reader(body);
    const Header root = reader.readHeader();
    if (root.tag != kPackageTag) {
        return ParseResult::WrongRootTag;
    }
    if (entryLength(root.length) != static_cast<quint64>(body.size())) {
        return ParseResult::WrongRootLength;
    }
    while (!reader.atEnd()) {
        const ParseResult result = parseSection(reader, record, image);
        if (result != ParseResult::Success) {
            return result;
        }
    }
    // The sections fill the root exactly, as the root fills the body, unless the last one was cut.
    return reader.hasReadPastEnd() ? ParseResult::LengthMismatch : ParseResult::Success;
}

/// What is left of @p bytes when all but @p slice is taken away, in place.
QByteArray cutOut(QByteArray bytes, Slice slice)
{
    bytes.truncate(slice.position + slice.size);
    bytes.remove(0, slice.position);
    return bytes;
}

} // namespace

ParseResult parseBody(QByteArray body, PackageRecord &record)
{
    record.sections.clear();
    record.maskRules.clear();
    record.tokenRules.clear();

    std::optional<Slice> image;
    const ParseResult result = parsePackage(body, record, image);
    if (result == ParseResult::Success && image) {
        record.firmwareImage = cutOut(std::move(body), *image);
    }
    return result;
}

} // namespace tlv
