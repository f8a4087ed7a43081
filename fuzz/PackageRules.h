#pragma once

#include "tlv/PackageRecord.h"

#include <QByteArray>

#include <optional>

namespace fuzz {

/// What a package file holds, read without touching the disk; nothing when it is refused.
[[nodiscard]] std::optional<tlv::PackageRecord> readPackage(const QByteArray &package);

/// Checks what must hold for every file, whatever is in it: that it is read without harm, and that
/// an accepted package can be saved again and then reads the same.
///
/// A part of the files, chosen by their content, is opened from the disk as well.
void expectPackageRules(const QByteArray &package);

} // namespace fuzz
