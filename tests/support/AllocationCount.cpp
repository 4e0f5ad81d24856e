#include "tests/support/AllocationCount.h"

#include <algorithm>
#include <cstdlib>
#include <new>

namespace volvelle::test {

namespace {

AllocationCount* standing = nullptr;

} // namespace

AllocationCount::AllocationCount(std::size_t firstRefused) : refused(firstRefused)
{
    standing = this;
}

AllocationCount::~AllocationCount()
{
    standing = nullptr;
}

bool AllocationCount::admit(std::size_t size)
{
    bytes += size;
    greatest = std::max(greatest, size);
    return count++ < refused;
}

static void* allocate(std::size_t size)
{
    if (standing != nullptr && !standing->admit(size)) {
        return nullptr;
    }
    return std::malloc(size == 0 ? 1 : size);
}

} // namespace volvelle::test

void* operator new(std::size_t size)
{
    void* const memory = volvelle::test::allocate(size);
    if (memory == nullptr) {
        throw std::bad_alloc();
    }
    return memory;
}

void* operator new(std::size_t size, const std::nothrow_t& /*tag*/) noexcept
{
    return volvelle::test::allocate(size);
}

void operator delete(void* memory) noexcept
{
    std::free(memory);
}

void operator delete(void* memory, std::size_t /*size*/) noexcept
{
    std::free(memory);
}

void operator delete(void* memory, const std::nothrow_t& /*tag*/) noexcept
{
    std::free(memory);
}
