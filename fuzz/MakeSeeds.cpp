// Writes the seeds of the package readers: packages that the program saves, and others that it
// never would, though it opens them.

#include "fuzz/Forge.h"
#include "tests/tlv/Wire.h"
#include "tlv/PackageBody_p.h"
#include "tlv/PackageEnvelope_p.h"
#include "tlv/PackageRecord.h"
#include "tlv/PackageTags.h"

#include <QByteArray>
#include <QDir>
#include <QFile>
#include <QString>

#include <cstdio>
#include <cstdlib>

namespace {

using tlv::PackageRecord;
using tlv::seal;
using tlv::serializeBody;

constexpr quint32 kNullCount = 0xFFFFFFFF;

struct Seed
{
    const char *name;
    QByteArray bytes;
};

PackageRecord fullRecord()
{
    PackageRecord record;
    record.sections = {tlv::kRulesSectionTag, tlv::kHardwareSectionTag,
                       tlv::kFirmwareFileSectionTag};
    record.maskRules = {{1801, 0, "RISCV-****-01"}, {12, 4, "3.*"}};
    record.tokenRules = {{"A", "1"}, {"B", "rev 3"}};
    record.softwareOptions = {true, {1, 4}, {5, 99}, true, {0, 0}, {99, 99}};
    record.minimumHardwareVersion = 2;
    record.maximumHardwareVersion = 7;
    record.hardwareType = 2;
    record.layoutVersion = 1;
    record.firmwareAddress = 0x80000000;
    record.firmwareImage = wire::hex("7F 45 4C 46 00 01 02 03 FF");
    record.firmwareSize = static_cast<quint32>(record.firmwareImage.size());
    record.firmwareFileName = "image.bin";
    record.firmwareFilePath = "firmware/image.bin";
    return record;
}

PackageRecord withSections(const QVector<quint32> &sections)
{
    PackageRecord record = fullRecord();
    record.sections = sections;
    return record;
}

PackageRecord emptyRecord()
{
    PackageRecord record;
    record.sections = fullRecord().sections;
    return record;
}

PackageRecord namedRecord(const QByteArray &name, const QByteArray &path)
{
    PackageRecord record = withSections({tlv::kFirmwareFileSectionTag});
    record.firmwareFileName = name;
    record.firmwareFilePath = path;
    return record;
}

/// Byte arrays in their null form.
QByteArray nullBody()
{
    return wire::entry(tlv::kPackageTag,
                       wire::entry(tlv::kFirmwareFileSectionTag,
                                   wire::entry(tlv::kFirmwareSizeTag, wire::u32(0))
                                       + wire::forged(tlv::kFirmwareFileNameTag, kNullCount, {})
                                       + wire::forged(tlv::kFirmwareFilePathTag, kNullCount, {})));
}

QList<Seed> bodies()
{
    constexpr quint32 kRules = tlv::kRulesSectionTag;
    constexpr quint32 kHardware = tlv::kHardwareSectionTag;
    constexpr quint32 kFile = tlv::kFirmwareFileSectionTag;
    return {
        {"full", serializeBody(fullRecord())},
        {"empty-parts", serializeBody(emptyRecord())},
        {"no-section", serializeBody(PackageRecord())},
        {"rules", serializeBody(withSections({kRules}))},
        {"hardware", serializeBody(withSections({kHardware}))},
        {"firmware-file", serializeBody(withSections({kFile}))},
        {"other-order", serializeBody(withSections({kFile, kHardware, kRules}))},
        {"repeated", serializeBody(withSections({kRules, kRules, kFile, kFile}))},
        {"null-arrays", nullBody()},
        {"name-leads-out", serializeBody(namedRecord("../../out.bin", "//server/share/out.bin"))},
        {"name-is-a-folder", serializeBody(namedRecord("..", "C:\\CON"))},
        {"name-with-nul", serializeBody(namedRecord(wire::hex("61 00 62 2E 62 69 6E"), "/tmp"))},
        {"name-not-utf8", serializeBody(namedRecord(wire::hex("FF FE C0 AF 2E 62 69 6E"), "."))},
    };
}

QList<Seed> packages()
{
    const QByteArray body = serializeBody(fullRecord());
    const QByteArray package = seal(body);
    QByteArray otherFirstByte = package;
    otherFirstByte[0] = '#';
    const QByteArray stream = qCompress(body, 9).mid(4);
    return {
        {"full", package},
        {"no-section", seal(serializeBody(PackageRecord()))},
        {"empty-parts", seal(serializeBody(emptyRecord()))},
        {"null-arrays", seal(nullBody())},
        {"first-byte", otherFirstByte},
        {"bytes-behind", package + "bytes behind"},
        {"bytes-behind-the-stream", fuzz::envelope(qCompress(body) + "bytes behind")},
        {"stored", fuzz::quickSeal(body)},
        {"claims-nothing", fuzz::envelope(wire::u32(0) + stream)},
        {"claims-too-little", fuzz::envelope(wire::u32(1) + stream)},
        {"claims-too-much", fuzz::envelope(wire::u32(100000) + stream)},
        {"claims-the-impossible", fuzz::envelope(wire::u32(0xFFFFFFFF) + stream)},
        {"cut-stream", fuzz::envelope(qCompress(body).chopped(20))},
        {"empty-block", fuzz::envelope(QByteArray())},
        {"magic-alone", wire::hex("00 5A 45 4C")},
        {"cut", package.chopped(1)},
    };
}

/// UTF-8 behind the byte that says so.
QList<Seed> paths()
{
    return {
        {"temporary", QByteArray(" %tEmp%/a//b/../c ")},
        {"no-folder", QByteArray(" %ProgramFiles(x86)%\\x")},
        {"unknown", QByteArray(" %NOSUCH%/x")},
        {"two", QByteArray(" %TEMP%/%TMP%")},
        {"shared-sign", QByteArray(" %TEMP%TMP%")},
        {"not-first", QByteArray(" x/%SYSTEMDRIVE%")},
        {"share", QByteArray(" //server/share/../../x")},
        {"ligature", QByteArray(" %pro\xEF\xAC\x81les%")},
        {"wide", wire::hex("01 00 25 00 54 00 6D 00 70 00 25 D8 00")},
    };
}

/// The first byte says what the text behind it is tried on.
QList<Seed> clipboards()
{
    return {
        {"address", wire::hex("06 00") + "0x1A2B"},
        {"addresses", wire::hex("0E 00") + "0x \t0x1A0x2B"},
        {"address-too-long", wire::hex("06 00") + "0x123456789"},
        {"address-with-newline", wire::hex("06 00") + "0x12AB\n"},
        {"digits", wire::hex("0F 00") + "89ABCDEF"},
        {"parameter", wire::hex("09 00") + "2147483648"},
        {"index", wire::hex("0A 00") + "65536"},
        {"mask", wire::hex("0B 00") + "RISCV-****-01\n"},
        {"mask-half-pair", wire::hex("0B 01 D8 00 00 41")},
        {"token", wire::hex("0C 00") + "b"},
        {"tokens", wire::hex("0C 00") + "ab"},
        {"value", wire::hex("0D 00") + "rev\t3"},
        {"rows", QByteArray(" first  row\nsecond\trow\n\xFF\xFEnot UTF-8\n")},
    };
}

bool write(const QString &folder, const QList<Seed> &seeds)
{
    QDir().mkpath(folder);
    for (const Seed &seed : seeds) {
        QFile file(folder + QLatin1Char('/') + QLatin1String(seed.name));
        if (!file.open(QIODevice::WriteOnly) || file.write(seed.bytes) != seed.bytes.size()) {
            std::fprintf(stderr, "%s cannot be written\n", qPrintable(file.fileName()));
            return false;
        }
    }
    return true;
}

} // namespace

int main(int argc, char *argv[])
{
    if (argc != 2) {
        std::fprintf(stderr, "usage: make_fuzz_seeds CORPUS-FOLDER\n");
        return EXIT_FAILURE;
    }
    const QString corpus = QFile::decodeName(argv[1]);
    const bool isWritten = write(corpus + QStringLiteral("/file"), packages())
                           && write(corpus + QStringLiteral("/body"), bodies())
                           && write(corpus + QStringLiteral("/tree"), bodies())
                           && write(corpus + QStringLiteral("/paths"), paths())
                           && write(corpus + QStringLiteral("/clipboard"), clipboards());
    return isWritten ? EXIT_SUCCESS : EXIT_FAILURE;
}
