#include "services/audiodevice/RunawayGuard.h"

namespace volvelle {

bool RunawayGuard::allow(int frames, WaitableClock::Time now)
{
    if (now - windowStart > window) {
        windowStart = now;
        pulled = 0.0;
    }
    pulled += frames;
    ranAway = ranAway || pulled > mostSeconds * rate;
    return !ranAway;
}

} // namespace volvelle
