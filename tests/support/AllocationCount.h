#pragma once

#include <cstddef>

namespace volvelle::test {

// Counts what this program allocates by `new` while it stands, and can refuse it. One stands at a time; it
// allocates nothing itself. [any]
class AllocationCount {
public:
    static constexpr std::size_t never = static_cast<std::size_t>(-1);

    // The allocation of that number, from 0 on, and all after it are refused.
    explicit AllocationCount(std::size_t firstRefused = never);
    ~AllocationCount();
    AllocationCount(const AllocationCount&) = delete;
    AllocationCount& operator=(const AllocationCount&) = delete;

    // Notes an allocation; false where it is to be refused.
    bool admit(std::size_t size);

    std::size_t bytes = 0; // of all allocations, whether they were freed or not
    std::size_t count = 0;
    std::size_t greatest = 0; // bytes of one allocation

private:
    std::size_t refused;
};

} // namespace volvelle::test
