#pragma once

#include "tlv/PackageRecord.h"

#include <QCoreApplication>

class QString;

namespace tlv {

/// A firmware-update package in memory. One object serves one save or one load.
class ZelFile
{
    Q_DECLARE_TR_FUNCTIONS(ZelFile)

public:
    ZelFile() = default;
    ZelFile(const ZelFile &) = default;
    ZelFile(ZelFile &&) = default;
    ZelFile &operator=(const ZelFile &) = default;
    ZelFile &operator=(ZelFile &&) = default;
    virtual ~ZelFile() = default;

    void setMaskRules(const QList<MaskValidationRule> &rules);
    void setTokenRules(const QList<TokenValidationRule> &rules);
    void setSoftwareOptions(const SoftwareOptions &options);
    void setHardware(quint32 minimumVersion, quint32 maximumVersion, quint32 type,
                     quint32 layoutVersion);
    /// Takes the whole content of the firmware file at @p path, to be placed at @p address.
    ///
    /// Changes nothing when the name after its first dot is not exactly "bin", or the file cannot
    /// be read or is larger than a package can hold.
    void setFirmwareFile(const QString &path, quint32 address);

    [[nodiscard]] SoftwareOptions softwareOptions() const { return m_record.softwareOptions; }
    [[nodiscard]] quint32 minimumHardwareVersion() const { return m_record.minimumHardwareVersion; }
    [[nodiscard]] quint32 maximumHardwareVersion() const { return m_record.maximumHardwareVersion; }
    [[nodiscard]] quint32 hardwareType() const { return m_record.hardwareType; }
    [[nodiscard]] quint32 layoutVersion() const { return m_record.layoutVersion; }
    [[nodiscard]] QList<MaskValidationRule> maskRules() const { return m_record.maskRules; }
    [[nodiscard]] QList<TokenValidationRule> tokenRules() const { return m_record.tokenRules; }
    [[nodiscard]] quint32 firmwareAddress() const { return m_record.firmwareAddress; }
    [[nodiscard]] QByteArray firmwareImage() const { return m_record.firmwareImage; }
    /// Byte count of the image; in a read package, what the package says it is.
    [[nodiscard]] quint32 firmwareSize() const { return m_record.firmwareSize; }
    /// Name of the firmware file with its extension, UTF-8.
    [[nodiscard]] QByteArray firmwareFileName() const { return m_record.firmwareFileName; }
    /// Path of the firmware file as the user gave it, UTF-8.
    [[nodiscard]] QByteArray firmwareFilePath() const { return m_record.firmwareFilePath; }
    /// Full path of the file into which load() wrote the image, UTF-8.
    [[nodiscard]] QByteArray extractedFirmwarePath() const
    {
        return m_record.extractedFirmwarePath;
    }

    /// Writes the sections that were set to a package file.
    ///
    /// The image is the one that setFirmwareFile() read; its file must still exist. An empty
    /// @p path is replaced by a name made of the firmware's and the current time, beside the
    /// firmware file. Returns false with a translated message in @p errorMessage when nothing was
    /// written.
    [[nodiscard]] bool save(QString &path, QString &errorMessage);

    /// Reads a package file and writes its firmware image into the program's temporary folder.
    ///
    /// Returns false with a translated message in @p errorMessage when the package cannot be read,
    /// which leaves this object as it was, or when the image cannot be written. What a package
    /// leaves out keeps its value, except for the rules: these are then none. Sections that were
    /// read count as set by no one: to save a package again, set its parts anew.
    [[nodiscard]] bool load(const QString &path, QString &errorMessage);

private:
    void registerSection(quint32 tag);
    [[nodiscard]] bool extractFirmware(const QString &packageName);

    PackageRecord m_record;
};

} // namespace tlv
