#include "tlv/FirmwareExtraction_p.h"

#include "common/Paths.h"
#include "tlv/FileNameRules_p.h"
#include "tlv/PackageRecord.h"

#include <QByteArray>
#include <QDateTime>
#include <QDir>
#include <QFileInfo>
#include <QRegExp>
#include <QString>
#include <QStringList>

namespace tlv {

namespace {

constexpr int kStampDigits = 13;
/// Longest path that any system takes, in bytes of UTF-8.
constexpr int kLongestPath = 3 * 32767;

/// Whether @p path leads out of a folder through a link.
bool isLink(const QString &path)
{
    const QFileInfo info(path);
    return info.isSymLink() || info.isJunction();
}

/// The program's folder for extracted images, created if needed; empty when there is none or a link
/// stands in its place.
QString extractionFolder()
{
    const QString temporary = normalizePath(expandPlaceholder(QStringLiteral("%Temp%")));
    if (!QDir::isAbsolutePath(temporary)) {
        return {};
    }
    const QString maker = temporary + QDir::separator() + QStringLiteral("Halvorn Drives");
    QString folder = maker + QDir::separator() + QStringLiteral("ZEL File Creator");
    if (isLink(maker) || isLink(folder) || !QDir().mkpath(folder)) {
        return {};
    }
    return folder;
}

/// The server and the share that @p path begins with; empty for a path on this machine.
QString networkShare(const QString &path)
{
    const QString text = path.trimmed().replace(QLatin1Char('\\'), QLatin1Char('/'));
    if (!text.startsWith(QLatin1String("//")) && !text.startsWith(QLatin1String("/\?\?/"))) {
        return {};
    }
    return text.section(QLatin1Char('/'), 0, 3).toCaseFolded();
}

/// Whether the file that @p storedPath, UTF-8, names exists in @p folder.
///
/// A path on a network share is looked at only if the folder lies on that share: whoever made the
/// package must not make this machine connect to another.
bool existsInFolder(const QByteArray &storedPath, const QString &folder)
{
    if (storedPath.size() > kLongestPath || storedPath.contains('\0')) {
        return false;
    }
    const QString text = QString::fromUtf8(storedPath);
    const QString path = normalizePath(text);
    const QString share = networkShare(folder);
    // Cleaning a path can take a share away from it as well as bring one to light.
    if (path.isEmpty() || networkShare(text) != share || networkShare(path) != share) {
        return false;
    }
    return QDir::toNativeSeparators(QFileInfo(path).canonicalPath()) == folder;
}

/// Whether a name already ends in the stamp of an earlier extraction.
///
/// Deliberate: the captures are read without a match, so that no name counts as stamped.
bool isStamped()
{
    const QRegExp expression(QStringLiteral("^*_(\\d{%1}).bin$").arg(kStampDigits),
                             Qt::CaseSensitive);
    const QStringList captures = expression.capturedTexts();
    return captures.size() >= 2 && captures.at(1).size() == kStampDigits;
}

QString stampedName(const QString &name)
{
    return QFileInfo(name).baseName()
           + QStringLiteral("_%1.bin").arg(QDateTime::currentMSecsSinceEpoch());
}

QString extractionName(const PackageRecord &record, const QString &packageName,
                       const QString &folder)
{
    const QString storedName = QString::fromUtf8(record.firmwareFileName);
    const QString name = storedName.isEmpty() ? packageName : storedName;
    return isStamped() || existsInFolder(record.firmwareFilePath, folder) ? name
                                                                          : stampedName(name);
}

/// Whether @p name stays a plain file name when the file is opened: the local encoding may put a
/// separator in the place of a character that it lacks.
bool isSafeName(const QString &name)
{
    return isPlainFileName(name, nativeFileNames())
           && isPlainFileName(QString::fromLocal8Bit(name.toLocal8Bit()), nativeFileNames());
}

/// Whether @p path is free to be written: nothing is there yet, or a file that is no link.
bool isSafeTarget(const QString &path)
{
    const QFileInfo info(path);
    return !isLink(path) && (!info.exists() || info.isFile());
}

} // namespace

QString firmwareExtractionPath(const PackageRecord &record, const QString &packageName)
{
    const QString folder = extractionFolder();
    if (folder.isEmpty() || record.firmwareFileName.size() > kLongestPath) {
        return {};
    }
    const QString name = extractionName(record, packageName, folder);
    const QString path = folder + QDir::separator() + name;
    return isSafeName(name) && isSafeTarget(path) ? path : QString();
}

} // namespace tlv
