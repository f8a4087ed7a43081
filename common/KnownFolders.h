#pragma once

class QString;

/// The folders that placeholders stand for. The first three are the program's own: no system is
/// asked for them, their paths come from the environment alone.
enum class KnownFolder {
    SystemDrive,
    HomeDrive,
    Temporary,
    Windows,
    ProgramFiles,
    ProgramFilesX86,
    ProgramFilesCommon,
    ProgramFilesCommonX86,
    ProgramData,
    RoamingAppData,
    LocalAppData,
    Profile,
    Documents,
    Music,
    Pictures,
    Videos,
    Desktop,
    Public,
    PublicDocuments,
    PublicMusic,
    PublicPictures,
    PublicVideos,
    PublicDesktop,
};

/// What the platform knows of folders. Each platform has its own file for these functions.
namespace knownFolders {

/// Longest environment value, in bytes with the terminator, that is taken over.
constexpr int kExpansionCapacity = 260;

/// The value of the environment variable @p placeholder, which is written as "%NAME%"; empty when
/// it is not set or too long.
[[nodiscard]] QString environmentValue(const char *placeholder);

/// The temporary folder for when "%TEMP%" has no value; empty when the platform has no other.
[[nodiscard]] QString temporaryFallback();

/// The path of @p folder as the system gives it; empty when it does not know the folder.
[[nodiscard]] QString systemPath(KnownFolder folder);

/// Calls @p initialize once per process, safe against concurrent first calls.
void callOnce(void (*initialize)());

} // namespace knownFolders
