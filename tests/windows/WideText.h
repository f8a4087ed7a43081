#pragma once

#include <QString>

/// @p string for calls to the system; lives as long as @p string.
[[nodiscard]] inline const wchar_t *wideText(const QString &string)
{
    return reinterpret_cast<const wchar_t *>(string.utf16());
}
