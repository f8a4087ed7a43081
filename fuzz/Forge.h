#pragma once

#include <QByteArray>

namespace fuzz {

/// @p body as a zlib stream of stored blocks: quicker to make than a compressed one.
[[nodiscard]] QByteArray storedStream(const QByteArray &body);

/// The package file around a compressed block, with the right checksum.
[[nodiscard]] QByteArray envelope(const QByteArray &block);

/// The package file around @p body, which is stored uncompressed.
[[nodiscard]] QByteArray quickSeal(const QByteArray &body);

} // namespace fuzz
