#include "tests/support/allocationlimit.h"

#include <atomic>
#include <cstdlib>
#include <limits>
#include <new>

namespace {

std::atomic<std::size_t> largest{std::numeric_limits<std::size_t>::max()};

} // namespace

void *operator new(std::size_t size, const std::nothrow_t &) noexcept
{
    return size > largest ? nullptr : std::malloc(size != 0 ? size : 1);
}

void *operator new(std::size_t size)
{
    void *memory = operator new(size, std::nothrow);
    if (!memory)
        throw std::bad_alloc();
    return memory;
}

void operator delete(void *memory) noexcept
{
    std::free(memory);
}

void operator delete(void *memory, std::size_t) noexcept
{
    std::free(memory);
}

AllocationLimit::~AllocationLimit()
{
    set(std::numeric_limits<std::size_t>::max());
}

void AllocationLimit::set(std::size_t bytes)
{
    largest = bytes;
}
