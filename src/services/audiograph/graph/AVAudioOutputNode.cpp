#include "services/audiograph/graph/AVAudioOutputNode.h"

#include "services/audiograph/graph/RenderStep.h"

#include <algorithm>

namespace volvelle {

void AVAudioOutputNode::renderNode(std::span<RenderInput> inputs, float* left, float* right,
                                   int frames) noexcept
{
    if (inputs.empty()) {
        std::fill_n(left, frames, 0.0F);
        std::fill_n(right, frames, 0.0F);
    } else {
        inputs.front().pull(left, right, frames);
    }
}

} // namespace volvelle
