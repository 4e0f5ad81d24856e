#pragma once

#include "services/audiodevice/WaitableClock.h"

namespace volvelle {

// Notices a device that no longer plays but pulls as fast as the processor can: one that takes more than 4 s
// of audio within 0.25 s. [render]
class RunawayGuard {
public:
    static constexpr WaitableClock::Time window = std::chrono::milliseconds(250);
    static constexpr double mostSeconds = 4.0;

    explicit RunawayGuard(double rate) : rate(rate) {} // Hz

    // Counts `frames` pulled at `now`; false once the device runs away, and ever after.
    bool allow(int frames, WaitableClock::Time now);

private:
    double rate;         // Hz
    double pulled = 0.0; // frames within the window
    WaitableClock::Time windowStart{0};
    bool ranAway = false;
};

} // namespace volvelle
