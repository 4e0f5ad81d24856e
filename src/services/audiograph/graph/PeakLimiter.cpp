#include "services/audiograph/graph/PeakLimiter.h"

#include "base/realtime/AudioSource.h"

#include <algorithm>
#include <cmath>
#include <limits>

namespace volvelle {

namespace {

constexpr double framesPerSecond = AudioSource::sampleRate;

std::shared_ptr<AUParameter> parameter(AUParameterAddress address, const char* identifier, const char* name,
                                       float minimum, float maximum, float value)
{
    return std::make_shared<AUParameter>(address, identifier, name, minimum, maximum, value);
}

float factorOf(float decibels)
{
    return std::pow(10.0F, decibels / 20.0F);
}

// A sample that is not finite counts as silence.
float soundOf(float sample)
{
    return std::fabs(sample) <= std::numeric_limits<float>::max() ? sample : 0.0F;
}

} // namespace

PeakLimiter::PeakLimiter(const AudioComponentDescription& description)
    : AUAudioUnit(description),
      preGain(parameter(preGainAddress, "preGain", "Pre-gain (dB)", -40.0F, 40.0F, 0.0F)),
      ceiling(parameter(ceilingAddress, "ceiling", "Ceiling (dB)", -20.0F, 0.0F, -0.3F)),
      release(parameter(releaseAddress, "release", "Release (s)", 0.001F, 1.0F, 0.1F))
{
    audioUnitName = "Peak limiter";
    inputBusses.resize(1);
    outputBusses.resize(1);
    parameterTree = std::make_shared<AUParameterTree>(
        std::vector<std::shared_ptr<AUParameter>>{preGain, ceiling, release});
}

double PeakLimiter::latency() const
{
    return delayFrames / framesPerSecond;
}

void PeakLimiter::reset() noexcept
{
    gain.reset();
    delayedLeft.fill(0.0F);
    delayedRight.fill(0.0F);
    place = 0;
}

void PeakLimiter::takeParameters() noexcept
{
    if (preGain->value() != preGainDecibels) {
        preGainDecibels = preGain->value();
        preFactor = factorOf(preGainDecibels);
    }
    if (ceiling->value() != ceilingDecibels) {
        ceilingDecibels = ceiling->value();
        limit = factorOf(ceilingDecibels);
    }
    gain.setRelease(release->value());
}

void PeakLimiter::renderBlock(const float* inputLeft, const float* inputRight, float* left, float* right,
                              int frames, std::span<const TimedMessage>) noexcept
{
    takeParameters();
    const float peak = prepare(inputLeft, inputRight, left, right, frames);
    const bool isQuiet = gain.isIdle() && peak <= limit;
    for (int i = 0; i < frames; ++i) {
        const float factor =
            isQuiet ? 1.0F : gain.next(std::max(std::fabs(left[i]), std::fabs(right[i])), limit);
        delay(left[i], right[i]);
        left[i] = std::clamp(left[i] * factor, -limit, limit);
        right[i] = std::clamp(right[i] * factor, -limit, limit);
    }
}

float PeakLimiter::prepare(const float* inputLeft, const float* inputRight, float* left, float* right,
                           int frames) const noexcept
{
    float peak = 0.0F;
    for (int i = 0; i < frames; ++i) {
        left[i] = inputLeft == nullptr ? 0.0F : soundOf(inputLeft[i] * preFactor);
        right[i] = inputRight == nullptr ? 0.0F : soundOf(inputRight[i] * preFactor);
        peak = std::max({peak, std::fabs(left[i]), std::fabs(right[i])});
    }
    return peak;
}

void PeakLimiter::delay(float& left, float& right) noexcept
{
    std::swap(left, delayedLeft[static_cast<std::size_t>(place)]);
    std::swap(right, delayedRight[static_cast<std::size_t>(place)]);
    place = place + 1 == delayFrames ? 0 : place + 1;
}

} // namespace volvelle
