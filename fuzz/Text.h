#pragma once

#include <QString>

#include <cstddef>
#include <cstdint>

namespace fuzz {

/// The text in an input whose first byte tells its form: even for UTF-8, odd for UTF-16 with all
/// that may be wrong in it, such as half a surrogate pair.
[[nodiscard]] inline QString textOf(const std::uint8_t *data, std::size_t size)
{
    if (size == 0) {
        return {};
    }
    const auto *const bytes = reinterpret_cast<const char *>(data + 1);
    const auto length = static_cast<int>(size - 1);
    if (data[0] % 2 == 0) {
        return QString::fromUtf8(bytes, length);
    }
    QString text;
    for (int position = 0; position + 1 < length; position += 2) {
        text.append(
            QChar(static_cast<uchar>(bytes[position + 1]), static_cast<uchar>(bytes[position])));
    }
    return text;
}

} // namespace fuzz
