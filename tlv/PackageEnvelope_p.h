#pragma once

#include <QByteArray>

class QIODevice;

namespace tlv {

/// The bytes of a package file around @p body: magic, compressed body and checksum. The body is
/// taken by value so that it can be let go as soon as it is compressed.
[[nodiscard]] QByteArray seal(QByteArray body);

/// The body in the package file @p device; empty when the file is not a package or is damaged.
///
/// Nothing is allocated that the file's size does not account for.
[[nodiscard]] QByteArray unseal(QIODevice &device);

} // namespace tlv
