#pragma once

#include <array>
#include <atomic>
#include <cstddef>
#include <string>
#include <string_view>

namespace volvelle {

// Lines of threads that render, on their way to the console: a ring of fixed size. Putting a line in takes no
// lock, allocates nothing and never waits; what finds no room is counted. [any]
class LineRing {
public:
    static constexpr std::size_t capacity = 256; // lines
    static constexpr std::size_t longest = 240;  // bytes of a line; the rest is cut off

    // Puts in one line, made of the two texts. False where there is no room.
    bool push(std::string_view beginning, std::string_view rest = "") noexcept;

    // Takes out the next line, in the order in which they came in. False where none is complete.
    bool pop(std::string& line);

    // The lines that found no room since the last call.
    std::size_t takeMissed() noexcept { return missed.exchange(0, std::memory_order_relaxed); }

private:
    struct Slot {
        std::atomic<std::size_t> turns{0}; // how often it was filled and emptied: odd where it holds a line
        std::size_t length = 0;            // bytes
        std::array<char, longest> text{};
    };

    // Claims the next place whose slot has been used `turns` times in its round; null where there is none.
    Slot* claim(std::atomic<std::size_t>& next, std::size_t turns) noexcept;

    std::array<Slot, capacity> slots{};
    std::atomic<std::size_t> newest{0}; // lines that came in since the start
    std::atomic<std::size_t> oldest{0}; // lines that went out since the start
    std::atomic<std::size_t> missed{0};
};

} // namespace volvelle
