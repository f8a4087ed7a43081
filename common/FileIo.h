#pragma once

class QByteArray;
class QString;

/// Creates or truncates the file at @p path and writes @p bytes to it in one call.
///
/// The path is converted to the system's local 8-bit encoding. Returns false for an empty path and
/// when the file cannot be opened. Deliberately, how many bytes were written is not checked: a disk
/// that fills up while the file is written is not reported.
[[nodiscard]] bool writeBytesToFile(const QString &path, const QByteArray &bytes);
