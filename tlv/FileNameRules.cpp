#include "tlv/FileNameRules_p.h"

#include <QRegularExpression>
#include <QString>

#include <algorithm>

namespace tlv {

namespace {

constexpr ushort kFirstPrintable = 0x20;

bool isForbidden(QChar character, const FileNameRules &rules)
{
    if (character.isNull()) {
        return true;
    }
    if (character.unicode() < kFirstPrintable) {
        return !rules.allowsControlCharacters;
    }
    return rules.forbiddenCharacters.contains(character);
}

/// Windows takes these for devices whatever extension and blanks follow them.
bool isDeviceName(const QString &name)
{
    static const QRegularExpression pattern(
        QStringLiteral(
            "^(CON|PRN|AUX|NUL|CLOCK\\$|CONIN\\$|CONOUT\\$|(COM|LPT)[0-9\u00B9\u00B2\u00B3])"
            " *(\\..*)?$"),
        QRegularExpression::CaseInsensitiveOption | QRegularExpression::DotMatchesEverythingOption);
    return pattern.match(name).hasMatch();
}

} // namespace

const FileNameRules kPosixFileNames = {QLatin1String("/"), true, true, false};
const FileNameRules kWindowsFileNames = {QLatin1String("/\\:*?\"<>|"), false, false, true};

const FileNameRules &nativeFileNames()
{
#ifdef Q_OS_WIN
    return kWindowsFileNames;
#else
    return kPosixFileNames;
#endif
}

bool isPlainFileName(const QString &name, const FileNameRules &rules)
{
    if (name.isEmpty() || name == QLatin1String(".") || name == QLatin1String("..")) {
        return false;
    }
    if (std::any_of(name.cbegin(), name.cend(),
                    [&rules](QChar c) { return isForbidden(c, rules); })) {
        return false;
    }
    if (!rules.allowsTrailingDotOrBlank
        && (name.endsWith(QLatin1Char('.')) || name.endsWith(QLatin1Char(' ')))) {
        return false;
    }
    return !rules.hasDeviceNames || !isDeviceName(name);
}

} // namespace tlv
