#include "tlv/ZelFile.h"

#include "common/FileIo.h"
#include "tlv/FirmwareExtraction_p.h"
#include "tlv/PackageBody_p.h"
#include "tlv/PackageEnvelope_p.h"
#include "tlv/PackageTags.h"

#include <QDateTime>
#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <QString>

#include <new>
#include <optional>
#include <utility>

namespace tlv {

namespace {

/// Leaves room in a byte array, which holds less than 2 GiB, for the image's other entries and for
/// a compressed form that is longer than the image.
constexpr qint64 kLargestImage = 2'000'000'000;

/// The whole content of @p file; nothing when it cannot be read or does not fit into memory.
std::optional<QByteArray> contentOf(QFile &file)
{
    try {
        QByteArray content = file.readAll();
        if (file.error() == QFileDevice::NoError) {
            return content;
        }
        return {};
    } catch (const std::bad_alloc &) {
        return {};
    }
}

/// The path of a package beside its firmware file, for a save without a given path.
QString packagePathBeside(const QFileInfo &firmware)
{
    const QString name =
        QStringLiteral("%1_%2.zel")
            .arg(firmware.baseName(), QString::number(QDateTime::currentMSecsSinceEpoch()));
    return QDir(firmware.canonicalPath()).filePath(name);
}

/// The package file of @p record; empty when it does not fit into memory.
QByteArray sealed(const PackageRecord &record)
{
    try {
        return seal(serializeBody(record));
    } catch (const std::bad_alloc &) {
        return {};
    }
}

/// Reads what @p file holds into @p record. Nothing when it does not fit into memory.
std::optional<ParseResult> parse(QFile &file, PackageRecord &record)
{
    try {
        return parseBody(unseal(file), record);
    } catch (const std::bad_alloc &) {
        return {};
    }
}

/// Performed all the same, though the firmware was just found there: its folder is created if
/// needed.
void ensureFolderOf(const QFileInfo &firmware)
{
    const QDir folder(firmware.canonicalPath());
    if (!folder.exists()) {
        folder.mkpath(folder.path());
    }
}

} // namespace

void ZelFile::setMaskRules(const QList<MaskValidationRule> &rules)
{
    registerSection(kRulesSectionTag);
    m_record.maskRules = rules;
}

void ZelFile::setTokenRules(const QList<TokenValidationRule> &rules)
{
    registerSection(kRulesSectionTag);
    m_record.tokenRules = rules;
}

void ZelFile::setSoftwareOptions(const SoftwareOptions &options)
{
    registerSection(kRulesSectionTag);
    m_record.softwareOptions = options;
}

void ZelFile::setHardware(quint32 minimumVersion, quint32 maximumVersion, quint32 type,
                          quint32 layoutVersion)
{
    registerSection(kHardwareSectionTag);
    m_record.minimumHardwareVersion = minimumVersion;
    m_record.maximumHardwareVersion = maximumVersion;
    m_record.hardwareType = type;
    m_record.layoutVersion = layoutVersion;
}

void ZelFile::setFirmwareFile(const QString &path, quint32 address)
{
    const QFileInfo info(path);
    if (info.completeSuffix() != QLatin1String("bin") || !info.isFile()
        || info.size() > kLargestImage) {
        return;
    }
    QFile file(path);
    if (!file.open(QIODevice::ReadOnly)) {
        return;
    }
    const std::optional<QByteArray> image = contentOf(file);
    if (!image) {
        return;
    }
    registerSection(kFirmwareFileSectionTag);
    registerSection(kFirmwareTag);
    m_record.firmwareAddress = address;
    m_record.firmwareImage = *image;
    m_record.firmwareSize = static_cast<quint32>(image->size());
    m_record.firmwareFileName = info.fileName().toUtf8();
    m_record.firmwareFilePath = path.toUtf8();
}

bool ZelFile::save(QString &path, QString &errorMessage)
{
    if (m_record.firmwareFilePath.isEmpty()) {
        // Deliberate: the test is for an empty path, although the message speaks of the file.
        errorMessage = tr("The firmware file is empty. Please select another firmware file.");
        return false;
    }
    const QFileInfo firmware(QString::fromUtf8(m_record.firmwareFilePath));
    if (!firmware.exists()) {
        errorMessage = tr("The firmware file doesn't exist. Please select another firmware file.");
        return false;
    }
    if (firmware.isDir()) {
        errorMessage = tr("The firmware path is a folder. Please select another firmware file.");
        return false;
    }
    const QByteArray package = sealed(m_record);
    if (path.isEmpty()) {
        path = packagePathBeside(firmware);
    }
    ensureFolderOf(firmware);
    if (package.isEmpty() || !writeBytesToFile(path, package)) {
        errorMessage = tr("Failed to open an ZEL file for writing.");
        return false;
    }
    return true;
}

bool ZelFile::load(const QString &path, QString &errorMessage)
{
    const QFileInfo info(path);
    if (!info.exists()) {
        errorMessage = tr("ZEL file doesn't exist.");
        return false;
    }
    const QString notAPackage =
        tr("Cannot open the provided file, because it is not a valid ZEL file.");
    if (info.completeSuffix() != QLatin1String("zel")) {
        errorMessage = notAPackage;
        return false;
    }
    const QString cannotOpen = tr("Failed to open the ZEL file.");
    QFile file(path);
    if (!info.isFile() || !file.open(QIODevice::ReadOnly)) {
        errorMessage = cannotOpen;
        return false;
    }
    PackageRecord record = m_record;
    const std::optional<ParseResult> result = parse(file, record);
    if (!result) {
        errorMessage = cannotOpen;
        return false;
    }
    if (*result != ParseResult::Success) {
        errorMessage = notAPackage;
        return false;
    }
    m_record = std::move(record);
    file.close();
    if (!extractFirmware(info.fileName())) {
        errorMessage = tr("Failed to save firmware to a temporary folder.");
        return false;
    }
    return true;
}

void ZelFile::registerSection(quint32 tag)
{
    if (!m_record.sections.contains(tag)) {
        m_record.sections.append(tag);
    }
}

bool ZelFile::extractFirmware(const QString &packageName)
{
    const QString path = firmwareExtractionPath(m_record, packageName);
    m_record.extractedFirmwarePath = path.toUtf8();
    return writeBytesToFile(path, m_record.firmwareImage);
}

} // namespace tlv
