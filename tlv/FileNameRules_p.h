#pragma once

#include <QLatin1String>

class QString;

namespace tlv {

/// What a file system makes of file names.
struct FileNameRules
{
    QLatin1String forbiddenCharacters; ///< Besides NUL.
    bool allowsControlCharacters;
    bool allowsTrailingDotOrBlank;
    bool hasDeviceNames; ///< Such as "CON", with or without an extension.
};

extern const FileNameRules kPosixFileNames;
extern const FileNameRules kWindowsFileNames;

/// The rules of the system that the program runs on.
[[nodiscard]] const FileNameRules &nativeFileNames();

/// Whether @p name, put behind a folder, names a file in that very folder and nothing else: not a
/// path, a folder, a device or a stream.
[[nodiscard]] bool isPlainFileName(const QString &name, const FileNameRules &rules);

} // namespace tlv
