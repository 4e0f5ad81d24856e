#include "services/audiograph/graph/LimiterGain.h"

#include "base/realtime/AudioSource.h"

#include <algorithm>
#include <cmath>
#include <cstddef>

namespace volvelle {

namespace {

constexpr double framesPerSecond = AudioSource::sampleRate;
constexpr double nearlyFull = 0.99999;

} // namespace

void LimiterGain::setRelease(float seconds) noexcept
{
    if (seconds != releaseSeconds) {
        releaseSeconds = seconds;
        releaseFactor = 1.0 - std::exp(-1.0 / (static_cast<double>(seconds) * framesPerSecond));
    }
}

float LimiterGain::next(float peak, float limit) noexcept
{
    const double allowed = static_cast<double>(lowest(peak > limit ? limit / peak : 1.0F));
    const double back = released + (allowed - released) * releaseFactor;
    released = allowed < released ? allowed : std::min(back, allowed);
    if (released > nearlyFull && allowed == 1.0) {
        released = 1.0;
    }
    double& oldest = recent[static_cast<std::size_t>(place)];
    sum += released - oldest;
    oldest = released;
    place = place + 1 == window ? 0 : place + 1;
    untouched = released == 1.0 ? std::min(untouched + 1, 2 * window) : 0;
    if (untouched >= window) {
        sum = window;
    }
    return static_cast<float>(sum / window);
}

float LimiterGain::lowest(float allowed) noexcept
{
    const auto at = [this](int index) -> Entry& {
        return lows[static_cast<std::size_t>((lowsBegin + index) % window)];
    };
    if (lowsCount > 0 && at(0).frame <= clock - window) {
        lowsBegin = (lowsBegin + 1) % window;
        --lowsCount;
    }
    while (lowsCount > 0 && at(lowsCount - 1).allowed >= allowed) {
        --lowsCount;
    }
    at(lowsCount) = {clock, allowed};
    ++lowsCount;
    ++clock;
    return at(0).allowed;
}

void LimiterGain::reset() noexcept
{
    const float seconds = releaseSeconds;
    const double factor = releaseFactor;
    *this = LimiterGain();
    releaseSeconds = seconds;
    releaseFactor = factor;
}

} // namespace volvelle
