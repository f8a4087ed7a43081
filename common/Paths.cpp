#include "common/Paths.h"

#include "common/KnownFolders.h"

#include <QDir>
#include <QHash>
#include <QLatin1String>
#include <QRegExp>
#include <QString>

namespace {

struct Placeholder
{
    const char *spelling; ///< As people prefer to read it; its key is the same in upper case.
    KnownFolder folder;
};

/// Several placeholders stand for the same folder.
constexpr Placeholder kPlaceholders[] = {
    {"%SystemDrive%", KnownFolder::SystemDrive},
    {"%HomeDrive%", KnownFolder::HomeDrive},
    {"%WinDir%", KnownFolder::Windows},
    {"%SystemRoot%", KnownFolder::Windows},
    {"%CommonProgramFiles%", KnownFolder::ProgramFilesCommon},
    {"%CommonProgramFiles(x86)%", KnownFolder::ProgramFilesCommonX86},
    {"%CommonProgramW6432%", KnownFolder::ProgramFilesCommon},
    {"%ProgramFiles%", KnownFolder::ProgramFiles},
    {"%ProgramFiles(x86)%", KnownFolder::ProgramFilesX86},
    {"%ProgramW6432%", KnownFolder::ProgramFiles},
    {"%ProgramData%", KnownFolder::ProgramData},
    {"%AllUsersProfile%", KnownFolder::ProgramData},
    {"%AppData%", KnownFolder::RoamingAppData},
    {"%LocalAppData%", KnownFolder::LocalAppData},
    {"%UserProfile%", KnownFolder::Profile},
    {"%HomePath%", KnownFolder::Profile},
    {"%MyDocuments%", KnownFolder::Documents},
    {"%MyMusic%", KnownFolder::Music},
    {"%MyPictures%", KnownFolder::Pictures},
    {"%MyVideo%", KnownFolder::Videos},
    {"%Desktop%", KnownFolder::Desktop},
    {"%UserDesktop%", KnownFolder::Desktop},
    {"%Public%", KnownFolder::Public},
    {"%PublicDocuments%", KnownFolder::PublicDocuments},
    {"%PublicMusic%", KnownFolder::PublicMusic},
    {"%PublicPictures%", KnownFolder::PublicPictures},
    {"%PublicVideo%", KnownFolder::PublicVideos},
    {"%PublicDesktop%", KnownFolder::PublicDesktop},
    {"%Temp%", KnownFolder::Temporary},
    {"%Tmp%", KnownFolder::Temporary},
};

using PlaceholderTable = QHash<QString, Placeholder>;
using FolderCache = QHash<int, QString>;

const PlaceholderTable &placeholders()
{
    static const PlaceholderTable table = [] {
        PlaceholderTable built;
        for (const Placeholder &placeholder : kPlaceholders) {
            built.insert(QString::fromLatin1(placeholder.spelling).toUpper(), placeholder);
        }
        return built;
    }();
    return table;
}

FolderCache &cachedFolders()
{
    static FolderCache cache;
    return cache;
}

void cache(KnownFolder folder, const QString &path)
{
    if (!path.isEmpty()) {
        cachedFolders().insert(static_cast<int>(folder), path);
    }
}

QString firstNotEmpty(const QString &path, const QString &fallback)
{
    return path.isEmpty() ? fallback : path;
}

/// Prefers the folders of 64-bit programs over those that the system reports to a 32-bit process.
void seedFolderCache()
{
    using knownFolders::environmentValue;
    cache(KnownFolder::SystemDrive, environmentValue("%SYSTEMDRIVE%"));
    cache(KnownFolder::HomeDrive, environmentValue("%HOMEDRIVE%"));
    cache(KnownFolder::Temporary,
          firstNotEmpty(environmentValue("%TEMP%"), knownFolders::temporaryFallback()));
    cache(KnownFolder::ProgramFilesCommon, firstNotEmpty(environmentValue("%COMMONPROGRAMW6432%"),
                                                         environmentValue("%COMMONPROGRAMFILES%")));
    cache(KnownFolder::ProgramFiles,
          firstNotEmpty(environmentValue("%PROGRAMW6432%"), environmentValue("%PROGRAMFILES%")));
}

/// The path of @p folder; empty when it is not known.
QString folderPath(KnownFolder folder)
{
    knownFolders::callOnce(&seedFolderCache);
    if (!cachedFolders().contains(static_cast<int>(folder))) {
        cache(folder, knownFolders::systemPath(folder));
    }
    return cachedFolders().value(static_cast<int>(folder));
}

/// A path cut behind the placeholder that it begins with.
struct SplitPath
{
    QString key; ///< The placeholder in upper case; empty when there is none, or more than one.
    QString rest;
};

SplitPath splitAtPlaceholder(const QString &path)
{
    if (path.count(QRegExp(QStringLiteral("%[()\\w]+%"))) != 1) {
        return {};
    }
    QRegExp expression(QStringLiteral("^(%[()\\w]+%)(.*)$"));
    if (expression.indexIn(path) < 0 || expression.captureCount() < 2) {
        return {};
    }
    return {expression.cap(1).toUpper(), expression.cap(2)};
}

} // namespace

QString expandPlaceholder(const QString &path)
{
    const SplitPath split = splitAtPlaceholder(path);
    const auto placeholder = placeholders().constFind(split.key);
    if (placeholder == placeholders().cend()) {
        return path;
    }
    const QString folder = folderPath(placeholder->folder);
    return folder.isEmpty() ? path : folder + split.rest;
}

QString normalizePath(const QString &path)
{
    QString clean = QDir::cleanPath(path.trimmed());
    const SplitPath split = splitAtPlaceholder(clean);
    const auto placeholder = placeholders().constFind(split.key);
    if (placeholder != placeholders().cend()) {
        clean = QString::fromLatin1(placeholder->spelling) + split.rest;
    }
    return QDir::toNativeSeparators(clean);
}
