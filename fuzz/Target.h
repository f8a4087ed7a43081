#pragma once

#include <cstddef>
#include <cstdint>

/// What a fuzzing engine asks of a target and gives to it. The names are the engine's.

extern "C" {

/// Called once, before the first input.
int LLVMFuzzerInitialize(int *argumentCount, char ***arguments);

/// Tries one input; ends the process when something is wrong. Always 0.
int LLVMFuzzerTestOneInput(const std::uint8_t *data, std::size_t size);

/// Changes the input of @p size bytes in @p data, which has room for @p capacity; the new size.
std::size_t LLVMFuzzerCustomMutator(std::uint8_t *data, std::size_t size, std::size_t capacity,
                                    unsigned int seed);

/// The engine's own way to change an input.
std::size_t LLVMFuzzerMutate(std::uint8_t *data, std::size_t size, std::size_t capacity);
}
