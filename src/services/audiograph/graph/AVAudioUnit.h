#pragma once

#include "services/audiograph/graph/AVAudioNode.h"
#include "services/audiograph/graph/AudioUnitCalls.h"
#include "services/audiograph/graph/GainRamp.h"

#include <array>
#include <atomic>
#include <memory>
#include <string>

namespace volvelle {

// The node of a unit.
class AVAudioUnit : public AVAudioNode {
public:
    // `unit` is never null, and belongs to no other node.
    explicit AVAudioUnit(std::shared_ptr<AUAudioUnit> unit);

    // The unit's own name and description. [main]
    const std::string& name() const { return unit->audioUnitName; }

    AudioComponentDescription audioComponentDescription() const { return unit->componentDescription; }

    // The unit, and the same as the low-level handle.
    const std::shared_ptr<AUAudioUnit>& auAudioUnit() const { return unit; }

    const AudioUnit& audioUnit() const { return unit; }

    int numberOfInputs() const override { return static_cast<int>(unit->inputBusses.size()); }

    int numberOfOutputs() const override { return static_cast<int>(unit->outputBusses.size()); }

    AVAudioFormat inputFormatForBus(int bus) const override;
    AVAudioFormat outputFormatForBus(int bus) const override;

    double latency() const override { return unit->latency(); }

    void housekeeping() override { unit->housekeeping(); }

    void engineStopped() override { unit->engineStopped(); }

    void renderNode(std::span<RenderInput> inputs, float* left, float* right, int frames) noexcept override;

    void setInPlan(bool isIn) noexcept override { unit->setInPlan(isIn); }

    void resetNode() noexcept override { unit->beginAnew(); }

    void advanceEngine(int frames) noexcept override { unit->advanceEngine(frames); }

protected:
    std::atomic<float> gain{1.0F};

private:
    const std::shared_ptr<AUAudioUnit> unit;
    GainRamp ramp; // render thread, as the buffers
    std::array<float, maximumFrames> inputLeft{};
    std::array<float, maximumFrames> inputRight{};
};

} // namespace volvelle
