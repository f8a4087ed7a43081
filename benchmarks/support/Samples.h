#pragma once

#include "models/MaskValidationRule.h"
#include "models/TokenValidationRule.h"

#include <QByteArray>
#include <QList>
#include <QString>

namespace tlv {
class ZelFile;
}

/// What is measured: images, rules and packages. All are the same in every run.
namespace samples {

enum class ImageKind { Firmware, Random };

constexpr int kMebibyte = 1024 * 1024;

/// A real firmware image, repeated, or random bytes; @p size bytes long.
[[nodiscard]] QByteArray image(ImageKind kind, int size);

/// @p count rules in an order that sorts as neither all sorted nor all reversed.
[[nodiscard]] QList<MaskValidationRule> maskRules(int count);
[[nodiscard]] QList<TokenValidationRule> tokenRules(int count);

/// A folder that goes with the process. The first call makes it the process's temporary folder and
/// its place for settings, so it has to come before the application object.
QString scratchFolder();

/// The path of a file called @p name in the scratch folder, written with @p bytes.
[[nodiscard]] QString writeFile(const QString &name, const QByteArray &bytes);

/// A package of the firmware file at @p imagePath, filled the way that the window does.
[[nodiscard]] tlv::ZelFile packageOf(const QString &imagePath,
                                     const QList<MaskValidationRule> &rules = {});

/// Saves @p package under @p name in the scratch folder and returns the path.
QString savePackage(tlv::ZelFile package, const QString &name);

/// Reads the package at @p path and writes its image to the temporary folder.
[[nodiscard]] tlv::ZelFile loadPackage(const QString &path);

} // namespace samples
