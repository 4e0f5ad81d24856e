#pragma once

#include "services/audiograph/graph/AVAudioNode.h"
#include "services/audiograph/graph/GainRamp.h"

#include <array>
#include <atomic>

namespace volvelle {

// Sums its inputs, whatever their rates, into one output at the rate of its outgoing connection (48,000 Hz
// until there is one).
class AVAudioMixerNode : public AVAudioNode {
public:
    static constexpr int maximumInputs = 128;

    // 1.0 at first. A change is spread over one block. [any]
    float outputVolume() const { return volume.load(std::memory_order_relaxed); }

    void setOutputVolume(float value) { volume.store(value, std::memory_order_relaxed); }

    // The lowest input bus without a connection. [main]
    int nextAvailableInputBus() const;

    int numberOfInputs() const override { return maximumInputs; }

    int numberOfOutputs() const override { return 1; }

    AVAudioFormat
    inputFormatForBus(int bus) const override; // that of the connection; without one the output's

    AVAudioFormat outputFormatForBus(int) const override { return format; }

    bool convertsRates() const override { return true; }

    bool setOutputFormat(const AVAudioFormat& wanted) override;
    void renderNode(std::span<RenderInput> inputs, float* left, float* right, int frames) noexcept override;

private:
    AVAudioFormat format;
    std::atomic<float> volume{1.0F};
    GainRamp gain; // render thread, as the buffers
    std::array<float, maximumFrames> scratchLeft{};
    std::array<float, maximumFrames> scratchRight{};
};

} // namespace volvelle
