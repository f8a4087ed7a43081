#pragma once

class QString;

/// Replaces the placeholder that @p path begins with, such as "%Temp%" in any case, by the folder
/// that it stands for.
///
/// A path is returned unchanged when it does not begin with a placeholder, holds more than one, or
/// when the placeholder or its folder is not known. To be called from the main thread.
[[nodiscard]] QString expandPlaceholder(const QString &path);

/// @p path without white space at its ends, cleaned of doubled separators and of "." and ".."
/// parts, with native separators. A placeholder that it begins with is kept, in its preferred
/// spelling.
[[nodiscard]] QString normalizePath(const QString &path);
