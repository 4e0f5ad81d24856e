#include "services/audiograph/graph/AVAudioMixerNode.h"

#include "services/audiograph/graph/AVAudioEngine.h"
#include "services/audiograph/graph/RenderStep.h"

#include <algorithm>

namespace volvelle {

namespace {

constexpr double lowestRate = 4000.0;    // Hz
constexpr double highestRate = 768000.0; // Hz

} // namespace

int AVAudioMixerNode::nextAvailableInputBus() const
{
    int bus = 0;
    while (engine != nullptr && bus < maximumInputs && engine->connections().input(*this, bus) != nullptr) {
        ++bus;
    }
    return bus;
}

AVAudioFormat AVAudioMixerNode::inputFormatForBus(int bus) const
{
    const AudioConnection* connection = engine == nullptr ? nullptr : engine->connections().input(*this, bus);
    return connection == nullptr ? format : connection->format;
}

bool AVAudioMixerNode::setOutputFormat(const AVAudioFormat& wanted)
{
    const bool isPossible = wanted.channelCount == format.channelCount && wanted.sampleRate >= lowestRate &&
                            wanted.sampleRate <= highestRate;
    if (isPossible) {
        format = wanted;
    }
    return isPossible;
}

void AVAudioMixerNode::renderNode(std::span<RenderInput> inputs, float* left, float* right,
                                  int frames) noexcept
{
    std::fill_n(left, frames, 0.0F);
    std::fill_n(right, frames, 0.0F);
    for (RenderInput& input : inputs) {
        input.pull(scratchLeft.data(), scratchRight.data(), frames);
        for (int i = 0; i < frames; ++i) {
            const auto place = static_cast<std::size_t>(i);
            left[i] += scratchLeft[place];
            right[i] += scratchRight[place];
        }
    }
    gain.apply(outputVolume(), left, right, frames);
}

} // namespace volvelle
