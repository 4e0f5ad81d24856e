#pragma once

#include <cstddef>

namespace volvelle {

// What a load may still allocate. It is counted for the longest that things can live, from the reading to the
// loaded sequence, so that all allocations together stay below 64 MiB and eight times the file.
class SMFBudget {
public:
    explicit SMFBudget(std::size_t fileSize) : left((std::size_t{63} << 20U) + 8 * fileSize) {}

    // False, from then on too, where so many bytes are more than what is left.
    bool take(std::size_t bytes)
    {
        spent = spent || bytes > left;
        left -= spent ? 0 : bytes;
        return !spent;
    }

    // A track, whatever it holds.
    bool takeTrack() { return take(trackCost); }

    bool isSpent() const { return spent; }

private:
    static constexpr std::size_t trackCost = 448;

    std::size_t left;
    bool spent = false;
};

} // namespace volvelle
