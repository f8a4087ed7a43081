#include "tlv/FirmwareExtraction_p.h"

#include "common/Paths.h"
#include "tlv/FileNameRules_p.h"
#include "tlv/PackageRecord.h"

#include <QDateTime>
#include <QDir>
#include <QFileInfo>
#include <QRegExp>
#include <QString>
#include <QStringList>

namespace tlv {

namespace {

constexpr int kStampDigits = 13;

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
    const QString folder = maker + QDir::separator() + QStringLiteral("ZEL File Creator");
    if (isLink(maker) || isLink(folder) || !QDir().mkpath(folder)) {
        return {};
    }
    return folder;
}

/// The server and the share that @p path begins with; empty for a path on this machine.
QString networkShare(const QString &path)
{
    const QString text = QString(path).replace(QLatin1Char('\\'), QLatin1Char('/')).trimmed();
    if (!text.startsWith(QLatin1String("//"))) {
        return {};
    }
    return text.section(QLatin1Char('/'), 0, 3, QString::SectionDefault).toCaseFolded();
}

/// Whether the file that @p storedPath names exists in @p folder.
///
/// A path on a network share is looked at only if the folder lies on that share: whoever made the
/// package must not make this machine connect to another.
bool existsInFolder(const QString &storedPath, const QString &folder)
{
    const QString path = normalizePath(storedPath);
    if (path.isEmpty() || path.contains(QChar::Null)
        || networkShare(storedPath) != networkShare(folder)) {
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
    const QString storedPath = QString::fromUtf8(record.firmwareFilePath);
    return isStamped() || existsInFolder(storedPath, folder) ? name : stampedName(name);
}

} // namespace

QString firmwareExtractionPath(const PackageRecord &record, const QString &packageName)
{
    const QString folder = extractionFolder();
    if (folder.isEmpty()) {
        return {};
    }
    const QString name = extractionName(record, packageName, folder);
    if (!isPlainFileName(name, kNativeFileNames)) {
        return {};
    }
    const QString path = folder + QDir::separator() + name;
    const QFileInfo info(path);
    const bool isTaken = isLink(path) || (info.exists() && !info.isFile());
    return isTaken ? QString() : path;
}

} // namespace tlv
