#pragma once

#include "models/MaskValidationRule.h"
#include "models/TokenValidationRule.h"

#include <QByteArray>
#include <QList>
#include <QVector>
#include <QtGlobal>

namespace tlv {

/// A software version; shown with two digits each, as in "02.10".
struct SoftwareVersion
{
    quint16 major = 0;
    quint16 minor = 0;

    friend bool operator==(SoftwareVersion left, SoftwareVersion right)
    {
        return left.major == right.major && left.minor == right.minor;
    }
    friend bool operator!=(SoftwareVersion left, SoftwareVersion right) { return !(left == right); }
};

/// The software versions of the two options to which an update applies; both limits are inclusive.
struct SoftwareOptions
{
    bool optionAEnabled = false;
    SoftwareVersion optionAMinimum;
    SoftwareVersion optionAMaximum;
    bool optionBEnabled = false;
    SoftwareVersion optionBMinimum;
    SoftwareVersion optionBMaximum;

    friend bool operator==(const SoftwareOptions &left, const SoftwareOptions &right)
    {
        return left.optionAEnabled == right.optionAEnabled
               && left.optionAMinimum == right.optionAMinimum
               && left.optionAMaximum == right.optionAMaximum
               && left.optionBEnabled == right.optionBEnabled
               && left.optionBMinimum == right.optionBMinimum
               && left.optionBMaximum == right.optionBMaximum;
    }
    friend bool operator!=(const SoftwareOptions &left, const SoftwareOptions &right)
    {
        return !(left == right);
    }
};

/// What a package holds.
struct PackageRecord
{
    QVector<quint32> sections; ///< Tags of the sections to write, in the order first set.
    QList<MaskValidationRule> maskRules;
    QList<TokenValidationRule> tokenRules;
    SoftwareOptions softwareOptions;
    quint32 minimumHardwareVersion = 0;
    quint32 maximumHardwareVersion = 0;
    quint32 hardwareType = 0;
    quint32 layoutVersion = 0;
    quint32 firmwareAddress = 0;
    QByteArray firmwareImage;
    quint32 firmwareSize = 0;         ///< Byte count of the image.
    QByteArray firmwareFileName;      ///< With extension, without folder; UTF-8.
    QByteArray firmwareFilePath;      ///< As the user gave it; UTF-8.
    QByteArray extractedFirmwarePath; ///< Where a read package's image was written; UTF-8.
};

} // namespace tlv
