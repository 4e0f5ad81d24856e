#pragma once

#include <array>
#include <atomic>
#include <cstddef>
#include <type_traits>

namespace volvelle {

// A value that one thread writes and another reads: the reader gets the newest that is complete. Neither ever
// waits.
template <typename T>
    requires std::is_trivially_copyable_v<T>
class LatestValue {
public:
    // [any] The one that writes.
    void write(const T& value) noexcept
    {
        slots[own] = value;
        own = middle.exchange(own | fresh, std::memory_order_acq_rel) & ~fresh;
    }

    // True where the value is another than at the last reading. [any] The one that reads.
    bool update() noexcept
    {
        if ((middle.load(std::memory_order_relaxed) & fresh) == 0) {
            return false;
        }
        seen = middle.exchange(seen, std::memory_order_acq_rel) & ~fresh;
        return true;
    }

    // The value of the last update(). [any] The one that reads.
    const T& read() const noexcept { return slots[seen]; }

private:
    static constexpr std::size_t fresh = 4;

    std::array<T, 3> slots{};
    std::size_t own = 0;                // writing thread
    std::atomic<std::size_t> middle{1}; // with `fresh` where it was not read yet
    std::size_t seen = 2;               // reading thread
};

} // namespace volvelle
