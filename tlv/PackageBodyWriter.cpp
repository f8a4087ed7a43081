#include "tlv/PackageBody_p.h"

#include "tlv/PackageRecord.h"
#include "tlv/PackageTags.h"
#include "tlv/TlvFrame.h"

#include <QByteArray>
#include <QVariant>
#include <QVariantList>

namespace tlv {

namespace {

/// A frame and the length that it declares: the sum over its entries of header and payload.
class FrameBuilder final
{
public:
    FrameBuilder &addBool(quint32 tag, bool value) { return add(tag, kBoolLength, value); }
    FrameBuilder &addInteger(quint32 tag, quint32 value) { return add(tag, kIntegerLength, value); }

    FrameBuilder &addBytes(quint32 tag, const QByteArray &value)
    {
        // A null array would be written with the count 0xFFFFFFFF.
        return add(tag, static_cast<quint32>(value.size()),
                   value.isNull() ? QByteArray("") : value);
    }

    FrameBuilder &addFrame(quint32 tag, const FrameBuilder &child)
    {
        return add(tag, child.m_length, QVariant::fromValue(child.m_frame));
    }

    /// Adds a list with one element, a frame of a single entry, for each of @p rules.
    template <typename Rule>
    FrameBuilder &addRules(quint32 listTag, quint32 ruleTag, const QList<Rule> &rules)
    {
        QVariantList elements;
        elements.reserve(rules.size());
        quint32 length = 0;
        for (const Rule &rule : rules) {
            const FrameBuilder element = FrameBuilder().addFrame(ruleTag, frameOf(rule));
            elements.append(QVariant::fromValue(element.m_frame));
            length += element.m_length;
        }
        return add(listTag, length, elements);
    }

    [[nodiscard]] const TlvFrame &frame() const { return m_frame; }
    [[nodiscard]] quint32 length() const { return m_length; }

private:
    FrameBuilder &add(quint32 tag, quint32 length, const QVariant &value)
    {
        m_frame.addField(tag, length, value);
        m_length += static_cast<quint32>(entryLength(length));
        return *this;
    }

    static FrameBuilder frameOf(const MaskValidationRule &rule);
    static FrameBuilder frameOf(const TokenValidationRule &rule);

    TlvFrame m_frame;
    quint32 m_length = 0;
};

quint32 joined(quint16 high, quint16 low)
{
    return (quint32{high} << 16) | low;
}

FrameBuilder FrameBuilder::frameOf(const MaskValidationRule &rule)
{
    return FrameBuilder()
        .addInteger(kMaskKeyTag, joined(rule.parameter, rule.index))
        .addBytes(kMaskTag, rule.mask);
}

FrameBuilder FrameBuilder::frameOf(const TokenValidationRule &rule)
{
    return FrameBuilder().addBytes(kTokenTag, rule.token).addBytes(kTokenValueTag, rule.value);
}

FrameBuilder optionFrame(bool enabled, SoftwareVersion minimum, SoftwareVersion maximum)
{
    return FrameBuilder()
        .addBool(kOptionEnabledTag, enabled)
        .addInteger(kMinimumVersionTag, joined(minimum.major, minimum.minor))
        .addInteger(kMaximumVersionTag, joined(maximum.major, maximum.minor));
}

FrameBuilder softwareOptionsFrame(const SoftwareOptions &options)
{
    return FrameBuilder()
        .addFrame(kOptionATag, optionFrame(options.optionAEnabled, options.optionAMinimum,
                                           options.optionAMaximum))
        .addFrame(kOptionBTag, optionFrame(options.optionBEnabled, options.optionBMinimum,
                                           options.optionBMaximum));
}

FrameBuilder rulesSection(const PackageRecord &record)
{
    return FrameBuilder()
        .addRules(kMaskRuleListTag, kMaskRuleTag, record.maskRules)
        .addRules(kTokenRuleListTag, kTokenRuleTag, record.tokenRules)
        .addFrame(kSoftwareOptionsTag, softwareOptionsFrame(record.softwareOptions));
}

FrameBuilder hardwareFrame(const PackageRecord &record)
{
    return FrameBuilder()
        .addInteger(kLayoutVersionTag, record.layoutVersion)
        .addInteger(kMinimumHardwareTag, record.minimumHardwareVersion)
        .addInteger(kMaximumHardwareTag, record.maximumHardwareVersion)
        .addInteger(kHardwareTypeTag, record.hardwareType);
}

FrameBuilder firmwareFrame(const PackageRecord &record)
{
    return FrameBuilder()
        .addInteger(kFirmwareAddressTag, record.firmwareAddress)
        .addBytes(kFirmwareImageTag, record.firmwareImage);
}

FrameBuilder hardwareSection(const PackageRecord &record)
{
    return FrameBuilder()
        .addFrame(kHardwareTag, hardwareFrame(record))
        .addFrame(kFirmwareTag, firmwareFrame(record));
}

FrameBuilder firmwareFileSection(const PackageRecord &record)
{
    return FrameBuilder()
        .addInteger(kFirmwareSizeTag, record.firmwareSize)
        .addBytes(kFirmwareFileNameTag, record.firmwareFileName)
        .addBytes(kFirmwareFilePathTag, record.firmwareFilePath);
}

} // namespace

QByteArray serializeBody(const PackageRecord &record)
{
    FrameBuilder sections;
    for (const quint32 tag : record.sections) {
        switch (tag) {
        case kRulesSectionTag:
            sections.addFrame(tag, rulesSection(record));
            break;
        case kHardwareSectionTag:
            sections.addFrame(tag, hardwareSection(record));
            break;
        case kFirmwareFileSectionTag:
            sections.addFrame(tag, firmwareFileSection(record));
            break;
        default:
            // Deliberate: the firmware is registered as a section and written inside the hardware.
            break;
        }
    }
    const FrameBuilder package = FrameBuilder().addFrame(kPackageTag, sections);
    return serializeFrame(package.frame(), static_cast<int>(package.length()));
}

} // namespace tlv
