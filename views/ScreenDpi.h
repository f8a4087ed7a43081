#pragma once

/// Horizontal logical resolution of the screen, in dots per inch.
[[nodiscard]] double screenDpi();
