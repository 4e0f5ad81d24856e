#pragma once

#include <algorithm>
#include <cstddef>
#include <cstdint>

namespace volvelle {

// What a load may still allocate: a pool for all, and eight times the bytes of each track. It is counted for
// the longest that things can live, from the reading to the loaded sequence, so that all allocations together
// stay below 64 MiB and eight times the file. A track that asks for more leaves a rest of the pool to those
// after it.
class SMFBudget {
public:
    // A track begins, whatever it holds, in so many bytes. Once there is not even room for it, nothing more
    // is given.
    void beginTrack(std::size_t bytes)
    {
        left -= trackCost;
        rest = std::max<std::int64_t>(left, 0) / 64;
        grant(bytes);
        over = over || left < 0;
        spent = over;
    }

    // The track goes on for so many bytes more.
    void grant(std::size_t bytes) { left += 8 * static_cast<std::int64_t>(bytes); }

    // So many of its bytes are another track's.
    void takeBack(std::size_t bytes) { left -= 8 * static_cast<std::int64_t>(bytes); }

    // False, from then on up to the next track too, where so many bytes are more than what is left.
    bool take(std::size_t bytes)
    {
        const auto cost = static_cast<std::int64_t>(bytes);
        spent = spent || cost > left - rest;
        left -= spent ? 0 : cost;
        return !spent;
    }

    // For the track, and for the file.
    bool isSpent() const { return spent; }

    bool isOver() const { return over; }

private:
    static constexpr std::int64_t trackCost = 448;

    std::int64_t left = std::int64_t{63} << 20U;
    std::int64_t rest = 0; // that the track must leave
    bool spent = false;
    bool over = false;
};

} // namespace volvelle
