#pragma once

#include "services/audiograph/graph/AudioConnections.h"
#include "services/audiograph/graph/RenderStep.h"
#include "services/audiograph/sequencer/SequencerCore.h"

#include <memory>
#include <vector>

namespace volvelle {

// What the render thread does for each block: the nodes that are heard, sources first, the output node last,
// and the sequencers that play into them. Never changes; made and destroyed on the main thread.
class RenderPlan {
public:
    // Makes the converters that are missing, and keeps them with the connections.
    RenderPlan(AudioConnections& connections, const std::shared_ptr<AVAudioNode>& output,
               std::vector<std::shared_ptr<SequencerCore>> sequencers);

    const std::vector<std::shared_ptr<SequencerCore>> sequencers;

    // MARK: [render]

    void beginBlock() noexcept;
    // Renders 1 to AVAudioNode::maximumFrames frames.
    void render(float* left, float* right, int frames) noexcept;
    void endBlock() noexcept;
    void resetNodes() noexcept;

    // Takes the place of `before` (null for none): nodes that come and go are told, sequencers that go fall
    // silent.
    void follow(RenderPlan* before) noexcept;

private:
    RenderStep& addStep(AudioConnections& connections, const std::shared_ptr<AVAudioNode>& node);
    bool holds(const AVAudioNode& node) const noexcept;
    bool holds(const SequencerCore& sequencer) const noexcept;

    std::vector<std::unique_ptr<RenderStep>> steps;
};

} // namespace volvelle
