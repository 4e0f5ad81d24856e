#pragma once

#include <array>
#include <cstdint>

namespace volvelle {

// The factor of a limiter: for each frame that comes in, one for the frame that came in `window` - 1 frames
// before, never more than that frame allows, and without steps.
class LimiterGain {
public:
    static constexpr int window = 64; // frames

    // Seconds to 63 percent of the way back.
    void setRelease(float seconds) noexcept;

    // `peak` is that of the frame that comes in, `limit` is above 0.
    float next(float peak, float limit) noexcept;

    // True while nothing is held down: as long as no peak is above the limit, next() would answer 1.
    bool isIdle() const noexcept { return untouched >= 2 * window; }

    void reset() noexcept;

private:
    float lowest(float allowed) noexcept;

    struct Entry {
        std::int64_t frame = 0;
        float allowed = 1.0F;
    };

    std::array<Entry, window> lows{}; // rising, in a ring
    int lowsBegin = 0;
    int lowsCount = 0;
    std::array<double, window> recent = filled(); // what was released, in a ring
    double sum = window;                          // of `recent`
    int place = 0;
    int untouched = 2 * window; // frames of full gain in a row, up to twice the window
    std::int64_t clock = 0;     // frames
    double released = 1.0;
    float releaseSeconds = 0.0F;
    double releaseFactor = 0.0;

    static std::array<double, window> filled()
    {
        std::array<double, window> result{};
        result.fill(1.0);
        return result;
    }
};

} // namespace volvelle
