#include "services/audiograph/graph/RenderStep.h"

namespace volvelle {

void RenderInput::pull(float* left, float* right, int frames) noexcept
{
    if (converter != nullptr) {
        converter->pull(*source, left, right, frames);
    } else {
        source->node->renderNode(source->inputs, left, right, frames);
    }
}

} // namespace volvelle
