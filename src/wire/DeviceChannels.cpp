#include "wire/DeviceChannels.h"

#include "wire/SystemExclusive.h"

namespace volvelle {

ExclusiveChange ExclusiveChange::of(std::span<const std::uint8_t> message) noexcept
{
    return {effectOf(message) == ExclusiveEffect::reset, octaveTunedChannels(message)};
}

void DeviceChannels::apply(const ExclusiveChange& change) noexcept
{
    if (change.resets) {
        clear();
    }
    for (std::size_t i = 0; i < states.size(); ++i) {
        if ((change.octaveTuned >> i & 1) != 0) {
            states[i].endTuningProgram();
        }
    }
}

} // namespace volvelle
