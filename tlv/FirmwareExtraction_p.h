#pragma once

class QString;

namespace tlv {

struct PackageRecord;

/// Creates the program's own folder inside the user's temporary folder and names the file in it
/// that the image of @p record, read from the package file called @p packageName, belongs in.
///
/// The names in a package may come from anyone. The result is empty when there is no temporary
/// folder, or when the name or what the file system holds under it would lead out of the program's
/// folder.
[[nodiscard]] QString firmwareExtractionPath(const PackageRecord &record,
                                             const QString &packageName);

} // namespace tlv
