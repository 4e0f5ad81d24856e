#pragma once

#include <cstddef>
#include <cstdint>
#include <span>
#include <vector>

namespace volvelle {

// The system exclusive messages that make the state of a device, in their order: the last reset, and of each
// setting after it the last one. Room is taken once, at construction; where it does not suffice the oldest
// settings go. [any]
class ExclusiveMemory {
public:
    static constexpr std::size_t maximumMessages = 512;
    static constexpr std::size_t maximumBytes = 65536;

    ExclusiveMemory();

    // A message that the device got; one without a lasting effect is passed over.
    void apply(std::span<const std::uint8_t> message) noexcept;

    void clear() noexcept;

    std::size_t size() const noexcept { return entries.size(); }

    // Valid until the next change.
    std::span<const std::uint8_t> operator[](std::size_t index) const noexcept;

private:
    struct Entry {
        std::uint64_t key = 0; // 0: a reset
        std::size_t begin = 0;
        std::size_t size = 0;
    };

    void remove(std::size_t index) noexcept;

    std::vector<Entry> entries;
    std::vector<std::uint8_t> bytes;
};

} // namespace volvelle
