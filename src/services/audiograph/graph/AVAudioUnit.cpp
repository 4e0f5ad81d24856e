#include "services/audiograph/graph/AVAudioUnit.h"

#include "base/FatalStop.h"
#include "services/audiograph/graph/RenderStep.h"

#include <algorithm>

namespace volvelle {

namespace {

AVAudioFormat formatOf(const std::vector<AUAudioUnitBus>& busses, int bus)
{
    const bool exists = bus >= 0 && bus < static_cast<int>(busses.size());
    return exists ? busses[static_cast<std::size_t>(bus)].format : AVAudioFormat{};
}

} // namespace

AVAudioUnit::AVAudioUnit(std::shared_ptr<AUAudioUnit> newUnit) : unit(std::move(newUnit))
{
    if (unit == nullptr) {
        fatalStop(nilMessage);
    }
}

AVAudioFormat AVAudioUnit::inputFormatForBus(int bus) const
{
    return formatOf(unit->inputBusses, bus);
}

AVAudioFormat AVAudioUnit::outputFormatForBus(int bus) const
{
    return formatOf(unit->outputBusses, bus);
}

void AVAudioUnit::renderNode(std::span<RenderInput> inputs, float* left, float* right, int frames) noexcept
{
    const bool hasInput = !unit->inputBusses.empty();
    if (inputs.empty()) {
        std::fill_n(inputLeft.data(), hasInput ? frames : 0, 0.0F);
        std::fill_n(inputRight.data(), hasInput ? frames : 0, 0.0F);
    } else {
        inputs.front().pull(inputLeft.data(), inputRight.data(), frames);
    }
    unit->render(hasInput ? inputLeft.data() : nullptr, hasInput ? inputRight.data() : nullptr, left, right,
                 frames);
    ramp.apply(gain.load(std::memory_order_relaxed), left, right, frames);
}

} // namespace volvelle
