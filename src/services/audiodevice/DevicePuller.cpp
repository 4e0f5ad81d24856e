#include "services/audiodevice/DevicePuller.h"

#include <algorithm>

namespace volvelle {

DevicePuller::DevicePuller(AudioSource& source, double rate, int channels)
    : converter(source, rate, channels), guard(rate), channels(channels)
{
}

DevicePuller::Answer DevicePuller::pull(float* interleaved, int frames, WaitableClock::Time now) noexcept
{
    if (!guard.allow(frames, now)) {
        lost = true;
    }
    if (lost) {
        std::fill_n(interleaved, static_cast<std::ptrdiff_t>(frames) * channels, 0.0F);
        return Answer::stop;
    }
    converter.pull(interleaved, frames);
    return Answer::goOn;
}

} // namespace volvelle
