#include "services/audiograph/graph/GainRamp.h"

namespace volvelle {

void GainRamp::apply(float target, float* left, float* right, int frames) noexcept
{
    const float begin = isSet ? current : target;
    current = target;
    isSet = true;
    if (begin == 1.0F && target == 1.0F) {
        return;
    }
    const float step = (target - begin) / static_cast<float>(frames);
    for (int i = 0; i < frames; ++i) {
        const float gain = begin == target ? target : begin + step * static_cast<float>(i + 1);
        left[i] *= gain;
        right[i] *= gain;
    }
}

} // namespace volvelle
