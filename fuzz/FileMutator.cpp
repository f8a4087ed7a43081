// Changes package files. Where the engine alone would hardly get past the checksum, it is made
// right again for most of them, so that the compressed block is tried as well.

#include "fuzz/Forge.h"
#include "fuzz/Target.h"

#include <QByteArray>

#include <algorithm>
#include <random>

namespace {

constexpr int kHeaderLength = 8;
constexpr int kChecksumLength = 2;

QByteArray engineMutation(QByteArray bytes, std::size_t capacity)
{
    const auto size = static_cast<std::size_t>(bytes.size());
    bytes.resize(static_cast<int>(std::max(capacity, size)));
    const std::size_t changed = LLVMFuzzerMutate(reinterpret_cast<std::uint8_t *>(bytes.data()),
                                                 size, std::max(capacity, size));
    bytes.truncate(static_cast<int>(changed));
    return bytes;
}

} // namespace

std::size_t LLVMFuzzerCustomMutator(std::uint8_t *data, std::size_t size, std::size_t capacity,
                                    unsigned int seed)
{
    constexpr auto kAround = static_cast<std::size_t>(kHeaderLength + kChecksumLength);
    std::minstd_rand random(seed);
    if (random() % 4 == 0 || size < kAround || capacity <= kAround) {
        return LLVMFuzzerMutate(data, size, capacity);
    }
    const QByteArray file(reinterpret_cast<const char *>(data), static_cast<int>(size));
    const QByteArray block = file.mid(kHeaderLength, file.size() - kHeaderLength - kChecksumLength);
    const QByteArray changed = fuzz::envelope(engineMutation(block, capacity - kAround));
    const auto changedSize = std::min(static_cast<std::size_t>(changed.size()), capacity);
    std::copy_n(changed.constData(), changedSize, data);
    return changedSize;
}
