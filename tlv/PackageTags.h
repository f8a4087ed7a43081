#pragma once

#include <QtGlobal>

/// The tags of a package's entries, in the order of the tree that they form, and the lengths that
/// these entries declare. Reader and writer follow this list from top to bottom.
namespace tlv {

/// Byte count of a tag with the length or count behind it.
constexpr quint32 kHeaderLength = 8;
constexpr quint32 kBoolLength = 1;
constexpr quint32 kIntegerLength = 4;

/// Byte count of an entry whose payload takes @p payloadLength bytes. An entry that holds others
/// declares the sum of their entry lengths.
constexpr quint64 entryLength(quint64 payloadLength)
{
    return kHeaderLength + payloadLength;
}

/// The root, the only outermost entry. It holds sections in any order.
constexpr quint32 kPackageTag = 0xF0000001;

/// Section: rules and software options.
constexpr quint32 kRulesSectionTag = 0xF0000002;

/// In the rules section: list of mask rules.
constexpr quint32 kMaskRuleListTag = 0xF0000003;
constexpr quint32 kMaskRuleTag = 0xF0000004;
constexpr quint32 kMaskKeyTag = 0xF0000005; ///< Parameter in the high 16 bits, index in the low.
constexpr quint32 kMaskTag = 0xF0000006;

/// In the rules section: list of token rules.
constexpr quint32 kTokenRuleListTag = 0xF0000007;
constexpr quint32 kTokenRuleTag = 0xF0000008;
constexpr quint32 kTokenTag = 0xF0000009;
constexpr quint32 kTokenValueTag = 0xF000000A;

/// In the rules section: software options. Both options have the same children.
constexpr quint32 kSoftwareOptionsTag = 0xF000000B;
constexpr quint32 kOptionATag = 0xF000000C;
constexpr quint32 kOptionBTag = 0xF000000D;
constexpr quint32 kOptionEnabledTag = 0xF0000010;
constexpr quint32 kMinimumVersionTag = 0xF000000E; ///< Major in the high 16 bits, minor in the low.
constexpr quint32 kMaximumVersionTag = 0xF000000F;

/// Section: hardware and firmware.
constexpr quint32 kHardwareSectionTag = 0xF0000011;

/// In the hardware section: the hardware that the firmware is for.
constexpr quint32 kHardwareTag = 0xF0000012;
constexpr quint32 kLayoutVersionTag = 0x50564552;   ///< "PVER"
constexpr quint32 kMinimumHardwareTag = 0x4D485756; ///< "MHWV"
constexpr quint32 kMaximumHardwareTag = 0x58485756; ///< "XHWV"
constexpr quint32 kHardwareTypeTag = 0x50485754;    ///< "PHWT"
constexpr quint64 kHardwareLength = 4 * entryLength(kIntegerLength);

/// In the hardware section: the firmware.
constexpr quint32 kFirmwareTag = 0xF0000013;
constexpr quint32 kFirmwareAddressTag = 0x50414452; ///< "PADR"
constexpr quint32 kFirmwareImageTag = 0x5042494E;   ///< "PBIN"
constexpr quint64 firmwareLength(quint64 imageLength)
{
    return entryLength(kIntegerLength) + entryLength(imageLength);
}

constexpr quint64 hardwareSectionLength(quint64 imageLength)
{
    return entryLength(kHardwareLength) + entryLength(firmwareLength(imageLength));
}

/// Section: where the firmware came from.
constexpr quint32 kFirmwareFileSectionTag = 0xF0000014;
constexpr quint32 kFirmwareSizeTag = 0x5053495A; ///< "PSIZ"
constexpr quint32 kFirmwareFileNameTag = 0xF0000015;
constexpr quint32 kFirmwareFilePathTag = 0xF0000016;

} // namespace tlv
