#include "common/KnownFolders.h"

#include <QDir>
#include <QFile>
#include <QHash>
#include <QStandardPaths>
#include <QString>

#include <mutex>

namespace knownFolders {

QString environmentValue(const char *placeholder)
{
    const QByteArray text(placeholder);
    const QByteArray value = qgetenv(text.mid(1, text.size() - 2).constData());
    return value.size() < kExpansionCapacity ? QFile::decodeName(value) : QString();
}

QString temporaryFallback()
{
    for (const char *placeholder : {"%TMP%", "%TMPDIR%"}) {
        QString value = environmentValue(placeholder);
        if (!value.isEmpty()) {
            return value;
        }
    }
    return QDir::tempPath();
}

QString systemPath(KnownFolder folder)
{
    static const QHash<int, QStandardPaths::StandardLocation> locations = {
        {static_cast<int>(KnownFolder::RoamingAppData), QStandardPaths::GenericConfigLocation},
        {static_cast<int>(KnownFolder::LocalAppData), QStandardPaths::GenericDataLocation},
        {static_cast<int>(KnownFolder::Profile), QStandardPaths::HomeLocation},
        {static_cast<int>(KnownFolder::Documents), QStandardPaths::DocumentsLocation},
        {static_cast<int>(KnownFolder::Music), QStandardPaths::MusicLocation},
        {static_cast<int>(KnownFolder::Pictures), QStandardPaths::PicturesLocation},
        {static_cast<int>(KnownFolder::Videos), QStandardPaths::MoviesLocation},
        {static_cast<int>(KnownFolder::Desktop), QStandardPaths::DesktopLocation},
    };
    const auto location = locations.constFind(static_cast<int>(folder));
    return location == locations.cend() ? QString() : QStandardPaths::writableLocation(*location);
}

void callOnce(void (*initialize)())
{
    static std::once_flag flag;
    std::call_once(flag, initialize);
}

} // namespace knownFolders
