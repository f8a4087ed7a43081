#include "tests/damage/HeapWatch.h"

#include <malloc.h>

#include <atomic>
#include <cstdlib>

// The functions of the C library that hold the heap. The definitions below take the place of those
// that every library of this process calls, and count on their way.
extern "C" {
void *libraryMalloc(std::size_t size) __asm__("__libc_malloc");
void *libraryCalloc(std::size_t count, std::size_t size) __asm__("__libc_calloc");
void *libraryRealloc(void *block, std::size_t size) __asm__("__libc_realloc");
void libraryFree(void *block) __asm__("__libc_free");
}

namespace {

std::atomic<long long> held{0};
std::atomic<long long> most{0};
std::atomic<long long> atRestart{0};

void *counted(void *block)
{
    if (block != nullptr) {
        held += static_cast<long long>(malloc_usable_size(block));
        if (held > most) {
            most.store(held);
        }
    }
    return block;
}

void uncount(void *block)
{
    if (block != nullptr) {
        held -= static_cast<long long>(malloc_usable_size(block));
    }
}

} // namespace

// The library's own headers name no parameter that a program could name as well.
// NOLINTBEGIN(readability-inconsistent-declaration-parameter-name)
extern "C" {

void *malloc(std::size_t size)
{
    return counted(libraryMalloc(size));
}

void *calloc(std::size_t count, std::size_t size)
{
    return counted(libraryCalloc(count, size));
}

void *realloc(void *block, std::size_t size)
{
    const long long before =
        block == nullptr ? 0 : static_cast<long long>(malloc_usable_size(block));
    void *const grown = libraryRealloc(block, size);
    if (grown != nullptr || size == 0) {
        held -= before;
    }
    return counted(grown);
}

void free(void *block)
{
    uncount(block);
    libraryFree(block);
}
}
// NOLINTEND(readability-inconsistent-declaration-parameter-name)

bool heapWatch::isAvailable()
{
    return true;
}

void heapWatch::restart()
{
    atRestart.store(held);
    most.store(held);
}

std::size_t heapWatch::peak()
{
    return static_cast<std::size_t>(most - atRestart);
}
