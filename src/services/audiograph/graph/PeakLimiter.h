#pragma once

#include "services/audiograph/graph/AUAudioUnit.h"
#include "services/audiograph/graph/LimiterGain.h"

#include <array>

namespace volvelle {

// A look-ahead peak limiter for 48,000 Hz: no sample leaves it above the ceiling, whatever comes in. While no
// peak reaches the ceiling it only delays.
class PeakLimiter final : public AUAudioUnit {
public:
    static constexpr int delayFrames = LimiterGain::window - 1;

    static constexpr AUParameterAddress preGainAddress = 0; // dB, -40 to 40, 0 at first
    static constexpr AUParameterAddress ceilingAddress = 1; // dB of full scale, -20 to 0, -0.3 at first
    static constexpr AUParameterAddress releaseAddress = 2; // seconds to 63 percent, 0.001 to 1, 0.1 at first

    explicit PeakLimiter(const AudioComponentDescription& description = limiterComponent);

    double latency() const override;

    double tailTime() const override { return latency(); }

    void reset() noexcept override;

protected:
    void renderBlock(const float* inputLeft, const float* inputRight, float* left, float* right, int frames,
                     std::span<const TimedMessage> events) noexcept override;

private:
    void takeParameters() noexcept;
    float prepare(const float* inputLeft, const float* inputRight, float* left, float* right,
                  int frames) const noexcept;
    void delay(float& left, float& right) noexcept;

    const std::shared_ptr<AUParameter> preGain;
    const std::shared_ptr<AUParameter> ceiling;
    const std::shared_ptr<AUParameter> release;

    // All below: render thread.
    float preGainDecibels = 0.0F;
    float preFactor = 1.0F;
    float ceilingDecibels = 1.0F; // none yet
    float limit = 1.0F;
    LimiterGain gain;
    std::array<float, delayFrames> delayedLeft{};
    std::array<float, delayFrames> delayedRight{};
    int place = 0; // of the oldest frame in both
};

} // namespace volvelle
