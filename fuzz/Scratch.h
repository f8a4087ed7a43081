#pragma once

class QString;

namespace fuzz {

/// A folder of this process alone, which is the temporary folder of the code under test as well.
/// Made by the first call, which comes before that code's first; removed when the process ends.
[[nodiscard]] const QString &scratchFolder();

/// Where in it the program extracts images to.
[[nodiscard]] QString extractionFolder();

} // namespace fuzz
