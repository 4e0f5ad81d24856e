#pragma once

#include "services/audiograph/graph/AVAudioNode.h"

namespace volvelle {

// The end of the graph: what it pulls goes to the sink, at 48,000 Hz. One input.
class AVAudioOutputNode : public AVAudioNode {
public:
    int numberOfInputs() const override { return 1; }

    int numberOfOutputs() const override { return 0; }

    AVAudioFormat inputFormatForBus(int) const override { return {}; }

    AVAudioFormat outputFormatForBus(int) const override { return {}; }

    void renderNode(std::span<RenderInput> inputs, float* left, float* right, int frames) noexcept override;
};

} // namespace volvelle
