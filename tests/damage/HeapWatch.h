#pragma once

#include <cstddef>

/// Counts what this process takes from the heap, whether it is ever touched or not.
namespace heapWatch {

/// Whether the heap can be watched: not where a sanitizer or the platform keeps it to itself.
[[nodiscard]] bool isAvailable();

/// Begins anew.
void restart();

/// The most bytes that were held at one time since restart(), beyond those held then.
[[nodiscard]] std::size_t peak();

} // namespace heapWatch
