// Changes bodies by their structure and repairs the lengths around each change.

#include "fuzz/Target.h"
#include "fuzz/TlvTree.h"

#include <QByteArray>

#include <algorithm>
#include <random>

namespace {

/// How much longer one change can make a value.
constexpr int kMostGrowth = 64;

QByteArray engineMutation(QByteArray value)
{
    const int size = value.size();
    value.resize(size + kMostGrowth);
    const std::size_t changed =
        LLVMFuzzerMutate(reinterpret_cast<std::uint8_t *>(value.data()),
                         static_cast<std::size_t>(size), static_cast<std::size_t>(value.size()));
    value.truncate(static_cast<int>(changed));
    return value;
}

} // namespace

std::size_t LLVMFuzzerCustomMutator(std::uint8_t *data, std::size_t size, std::size_t capacity,
                                    unsigned int seed)
{
    std::minstd_rand random(seed);
    if (random() % 16 == 0) {
        return LLVMFuzzerMutate(data, size, capacity);
    }
    fuzz::TlvTree tree(QByteArray(reinterpret_cast<const char *>(data), static_cast<int>(size)));
    for (auto changes = random() % 3 + 1; changes > 0; --changes) {
        tree.mutate(random, &engineMutation);
    }
    const QByteArray changed = tree.bytes();
    const auto changedSize = std::min(static_cast<std::size_t>(changed.size()), capacity);
    std::copy_n(changed.constData(), changedSize, data);
    return changedSize;
}
