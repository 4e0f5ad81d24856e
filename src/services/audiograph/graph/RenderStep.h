#pragma once

#include "services/audiograph/graph/AVAudioNode.h"
#include "services/audiograph/graph/ConnectionConverter.h"

#include <memory>
#include <utility>
#include <vector>

namespace volvelle {

struct RenderStep;

// One input of a step, and how it is filled.
class RenderInput {
public:
    RenderInput(int inputBus, RenderStep& inputSource, std::shared_ptr<ConnectionConverter> inputConverter)
        : bus(inputBus), source(&inputSource), converter(std::move(inputConverter))
    {
    }

    int bus;

    // Writes the next frames of what is connected, at the rate of the node that pulls. [render]
    void pull(float* left, float* right, int frames) noexcept;

private:
    RenderStep* source;                             // owned by the plan
    std::shared_ptr<ConnectionConverter> converter; // null where the rates are equal
};

// A node in a render plan, and what flows into it.
struct RenderStep {
    std::shared_ptr<AVAudioNode> node;
    std::vector<RenderInput> inputs; // by bus
};

} // namespace volvelle
