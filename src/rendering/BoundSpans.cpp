#include "rendering/BoundSpans.h"

#include <algorithm>
#include <array>

namespace volvelle {

namespace {

constexpr std::array<int, 3> binding{CONTROLLER_PORTA, CONTROLLER_SOSTENUTO, CONTROLLER_LEGATO};
constexpr int down = 64;

} // namespace

BoundSpans::BoundSpans(const SequencerEvents& events)
{
    DeviceChannels channels;
    for (const SequencerState& state : events.states) {
        if (state.isExclusive()) {
            channels.apply(ExclusiveChange::of(events.longMessages[state.longIndex]));
        } else {
            channels.apply(state.bytes);
        }
        if (mayChange(state) && isBoundIn(channels) != isBoundNow()) {
            changes.push_back({state.seconds, !isBoundNow()});
        }
    }
}

bool BoundSpans::holds(double seconds) const
{
    const auto behind = std::ranges::upper_bound(changes, seconds, {}, &Change::seconds);
    return behind != changes.begin() && (behind - 1)->isBound;
}

bool BoundSpans::mayChange(const SequencerState& state)
{
    const int number = state.bytes[1];
    const bool isBinding = std::ranges::find(binding, number) != binding.end();
    return state.isExclusive() || (kindOf(state.bytes) == STATUS_CONTROLLER &&
                                   (isBinding || number == CONTROLLER_RESET_CONTROLLERS));
}

bool BoundSpans::isBoundIn(const DeviceChannels& channels)
{
    for (int channel = 0; channel < channelCount; ++channel) {
        const auto isDown = [&](int pedal) { return channels[channel].controller(pedal) >= down; };
        if (std::ranges::any_of(binding, isDown)) {
            return true;
        }
    }
    return false;
}

} // namespace volvelle
