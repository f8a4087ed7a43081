#include "fuzz/PackageRules.h"

#include "fuzz/Expect.h"
#include "fuzz/Scratch.h"
#include "tlv/PackageBody_p.h"
#include "tlv/PackageEnvelope_p.h"
#include "tlv/PackageTags.h"
#include "tlv/ZelFile.h"

#include <QBuffer>
#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <QString>

namespace fuzz {

namespace {

using tlv::PackageRecord;
using tlv::ParseResult;
using tlv::ZelFile;

/// One file in so many is opened from the disk too; the others would wait for it.
constexpr uint kDiskShare = ZEL_FUZZ_DISK_SHARE;
/// One accepted file in so many is written again, which takes longer than reading it.
constexpr uint kRoundTripShare = ZEL_FUZZ_ROUND_TRIP_SHARE;

bool hasSameContent(const PackageRecord &left, const PackageRecord &right)
{
    return left.maskRules == right.maskRules && left.tokenRules == right.tokenRules
           && left.softwareOptions == right.softwareOptions
           && left.minimumHardwareVersion == right.minimumHardwareVersion
           && left.maximumHardwareVersion == right.maximumHardwareVersion
           && left.hardwareType == right.hardwareType && left.layoutVersion == right.layoutVersion
           && left.firmwareAddress == right.firmwareAddress
           && left.firmwareImage == right.firmwareImage && left.firmwareSize == right.firmwareSize
           && left.firmwareFileName == right.firmwareFileName
           && left.firmwareFilePath == right.firmwareFilePath;
}

QByteArray bodyOf(QByteArray package)
{
    QBuffer device(&package);
    device.open(QIODevice::ReadOnly);
    return tlv::unseal(device);
}

/// Byte count of all that the record took from a body.
qint64 contentSize(const PackageRecord &record)
{
    qint64 size = record.firmwareImage.size();
    for (const MaskValidationRule &rule : record.maskRules) {
        size += qint64{tlv::kIntegerLength} + rule.mask.size();
    }
    for (const TokenValidationRule &rule : record.tokenRules) {
        size += rule.token.size() + rule.value.size();
    }
    return size + record.firmwareFileName.size() + record.firmwareFilePath.size();
}

/// A record that holds something everywhere: nothing of it may decide whether a body is accepted.
PackageRecord usedRecord()
{
    PackageRecord record;
    record.sections = {tlv::kRulesSectionTag, tlv::kFirmwareTag};
    record.maskRules = {{1, 2, "used"}};
    record.tokenRules = {{"U", "used"}};
    record.firmwareImage = "used";
    record.firmwareFileName = "used.bin";
    return record;
}

void expectSameVerdictForUsedRecord(const QByteArray &body, ParseResult verdict)
{
    PackageRecord record = usedRecord();
    expect(tlv::parseBody(body, record) == verdict, "a verdict depends on the body alone");
}

/// The record, written again, is read again as it was, and its bytes are the only ones it has.
void expectRoundTrip(PackageRecord record)
{
    record.sections = {tlv::kRulesSectionTag, tlv::kHardwareSectionTag,
                       tlv::kFirmwareFileSectionTag};
    const QByteArray body = tlv::serializeBody(record);
    PackageRecord again;
    expect(tlv::parseBody(body, again) == ParseResult::Success, "what is written is accepted");
    expect(hasSameContent(record, again), "what is written is read again as it was");
}

/// Opens the package as a user does.
class DiskTrial final
{
public:
    DiskTrial(const QByteArray &package, const std::optional<PackageRecord> &record)
        : m_record(record)
    {
        writeFile(m_path, package);
        QString message;
        const bool isLoaded = m_file.load(m_path, message);
        expect(isLoaded == message.isEmpty(), "a refusal, and only a refusal, has its sentence");
        if (isLoaded) {
            expect(m_record.has_value(), "the file is accepted when its content is");
            expectContent(m_file);
            expectImage();
            expectSavedAgain();
        } else {
            expectRefusal(message);
        }
    }
    ~DiskTrial()
    {
        QFile::remove(m_path);
        removeImage(m_file);
    }
    Q_DISABLE_COPY_MOVE(DiskTrial)

private:
    static void writeFile(const QString &path, const QByteArray &bytes)
    {
        QFile file(path);
        expect(file.open(QIODevice::WriteOnly) && file.write(bytes) == bytes.size(),
               "the scratch folder takes a file");
    }

    static void removeImage(const ZelFile &file)
    {
        if (!file.extractedFirmwarePath().isEmpty()) {
            QFile::remove(QString::fromUtf8(file.extractedFirmwarePath()));
        }
    }

    void expectContent(const ZelFile &file) const
    {
        expect(file.maskRules() == m_record->maskRules, "mask rules from disk");
        expect(file.tokenRules() == m_record->tokenRules, "token rules from disk");
        expect(file.softwareOptions() == m_record->softwareOptions, "options from disk");
        expect(file.minimumHardwareVersion() == m_record->minimumHardwareVersion
                   && file.maximumHardwareVersion() == m_record->maximumHardwareVersion
                   && file.hardwareType() == m_record->hardwareType
                   && file.layoutVersion() == m_record->layoutVersion,
               "hardware from disk");
        expect(file.firmwareAddress() == m_record->firmwareAddress
                   && file.firmwareImage() == m_record->firmwareImage,
               "firmware from disk");
    }

    void expectRefusal(const QString &message) const
    {
        if (!m_record.has_value()) {
            expect(message.endsWith(QLatin1String("not a valid ZEL file.")),
                   "a damaged package is refused as one");
            expect(m_file.extractedFirmwarePath().isEmpty(), "nothing of it is written");
            return;
        }
        expect(message == QLatin1String("Failed to save firmware to a temporary folder."),
               "a sound package is refused only for its names");
    }

    void expectImage() const
    {
        const QString path = QString::fromUtf8(m_file.extractedFirmwarePath());
        const QFileInfo info(path);
        expect(info.isFile() && !info.isSymLink(), "the image is a file");
        expect(info.canonicalPath() == extractionFolder(), "the image is in the program's folder");
        QFile file(path);
        expect(file.open(QIODevice::ReadOnly) && file.readAll() == m_record->firmwareImage,
               "the file holds the image");
    }

    /// Saves what was read, with the image that was extracted, as the window does.
    void expectSavedAgain() const
    {
        const QString firmware = QString::fromUtf8(m_file.extractedFirmwarePath());
        if (QFileInfo(firmware).completeSuffix() != QLatin1String("bin")) {
            return;
        }
        ZelFile saved;
        saved.setMaskRules(m_file.maskRules());
        saved.setTokenRules(m_file.tokenRules());
        saved.setSoftwareOptions(m_file.softwareOptions());
        saved.setHardware(m_file.minimumHardwareVersion(), m_file.maximumHardwareVersion(),
                          m_file.hardwareType(), m_file.layoutVersion());
        saved.setFirmwareFile(firmware, m_file.firmwareAddress());
        QString path = m_path;
        QString message;
        expect(saved.save(path, message) && path == m_path, "what was read can be saved");
        ZelFile again;
        expect(again.load(m_path, message), "what was saved can be opened");
        expectContent(again);
        removeImage(again);
    }

    const QString m_path = scratchFolder() + QStringLiteral("/package.zel");
    const std::optional<PackageRecord> &m_record;
    ZelFile m_file;
};

} // namespace

std::optional<PackageRecord> readPackage(const QByteArray &package)
{
    PackageRecord record;
    if (tlv::parseBody(bodyOf(package), record) != ParseResult::Success) {
        return std::nullopt;
    }
    return record;
}

void expectPackageRules(const QByteArray &package)
{
    // The same for the same file.
    const uint lot = qChecksum(package.constData(), static_cast<uint>(package.size()));
    const QByteArray body = bodyOf(package);
    PackageRecord parsed;
    const ParseResult verdict = tlv::parseBody(body, parsed);
    std::optional<PackageRecord> record;
    if (verdict == ParseResult::Success) {
        record = parsed;
        expect(contentSize(parsed) <= body.size(), "a record holds no more than its body");
        if (lot % kRoundTripShare == 0) {
            expectRoundTrip(parsed);
        }
    }
    if (lot % kDiskShare == 0) {
        expectSameVerdictForUsedRecord(body, verdict);
        const DiskTrial trial(package, record);
    }
}

} // namespace fuzz
