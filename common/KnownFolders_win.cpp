#include "common/KnownFolders.h"

#include <QByteArray>
#include <QString>

#include <windows.h>

#include <knownfolders.h>
#include <objbase.h>
#include <shlobj.h>

namespace knownFolders {

namespace {

/// The system's identifier of @p folder; null for the folders that it does not know.
const KNOWNFOLDERID *identifierOf(KnownFolder folder)
{
    switch (folder) {
    case KnownFolder::SystemDrive:
    case KnownFolder::HomeDrive:
    case KnownFolder::Temporary:
        return nullptr;
    case KnownFolder::Windows:
        return &FOLDERID_Windows;
    case KnownFolder::ProgramFiles:
        return &FOLDERID_ProgramFiles;
    case KnownFolder::ProgramFilesX86:
        return &FOLDERID_ProgramFilesX86;
    case KnownFolder::ProgramFilesCommon:
        return &FOLDERID_ProgramFilesCommon;
    case KnownFolder::ProgramFilesCommonX86:
        return &FOLDERID_ProgramFilesCommonX86;
    case KnownFolder::ProgramData:
        return &FOLDERID_ProgramData;
    case KnownFolder::RoamingAppData:
        return &FOLDERID_RoamingAppData;
    case KnownFolder::LocalAppData:
        return &FOLDERID_LocalAppData;
    case KnownFolder::Profile:
        return &FOLDERID_Profile;
    case KnownFolder::Documents:
        return &FOLDERID_Documents;
    case KnownFolder::Music:
        return &FOLDERID_Music;
    case KnownFolder::Pictures:
        return &FOLDERID_Pictures;
    case KnownFolder::Videos:
        return &FOLDERID_Videos;
    case KnownFolder::Desktop:
        return &FOLDERID_Desktop;
    case KnownFolder::Public:
        return &FOLDERID_Public;
    case KnownFolder::PublicDocuments:
        return &FOLDERID_PublicDocuments;
    case KnownFolder::PublicMusic:
        return &FOLDERID_PublicMusic;
    case KnownFolder::PublicPictures:
        return &FOLDERID_PublicPictures;
    case KnownFolder::PublicVideos:
        return &FOLDERID_PublicVideos;
    case KnownFolder::PublicDesktop:
        return &FOLDERID_PublicDesktop;
    }
    return nullptr;
}

} // namespace

QString environmentValue(const char *placeholder)
{
    char value[kExpansionCapacity] = {};
    const DWORD length = ExpandEnvironmentStringsA(placeholder, value, kExpansionCapacity);
    // A variable that is not set is left as it was written.
    if (length == 0 || length > kExpansionCapacity || qstrcmp(value, placeholder) == 0) {
        return {};
    }
    return QString::fromLocal8Bit(value);
}

QString temporaryFallback()
{
    return {};
}

QString systemPath(KnownFolder folder)
{
    const KNOWNFOLDERID *const identifier = identifierOf(folder);
    if (identifier == nullptr) {
        return {};
    }
    PWSTR wide = nullptr;
    const HRESULT result = SHGetKnownFolderPath(*identifier, 0, nullptr, &wide);
    const QString path = SUCCEEDED(result) ? QString::fromWCharArray(wide) : QString();
    CoTaskMemFree(wide);
    return path;
}

void callOnce(void (*initialize)())
{
    static INIT_ONCE guard = INIT_ONCE_STATIC_INIT;
    BOOL pending = FALSE;
    if (InitOnceBeginInitialize(&guard, 0, &pending, nullptr) == FALSE || pending == FALSE) {
        return;
    }
    initialize();
    InitOnceComplete(&guard, 0, nullptr);
}

} // namespace knownFolders
