#include "tests/damage/HeapWatch.h"

bool heapWatch::isAvailable()
{
    return false;
}

void heapWatch::restart() {}

std::size_t heapWatch::peak()
{
    return 0;
}
