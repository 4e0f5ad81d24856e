#include "rendering/BoundSpans.h"

#include <algorithm>
#include <cmath>
#include <limits>

namespace volvelle {

namespace {

constexpr int down = 64;
constexpr std::uint16_t attenuation = ChannelParameter::notRegistered | 120U << 7U | 48U;

bool isMadeLouder(const ChannelState& state)
{
    const int value = state.parameterHigh(attenuation);
    return value != ChannelParameter::unset && value < 64;
}

bool isNote(const SequencerEvent& event)
{
    return event.kind == SequencerEvent::noteOn || event.kind == SequencerEvent::noteOff;
}

} // namespace

BoundSpans::BoundSpans(const SequencerEvents& events)
{
    const std::span<const SequencerEvent> all(events.events);
    for (std::size_t at = 0; at < all.size();) {
        std::size_t end = at + 1;
        while (end < all.size() && all[end].seconds == all[at].seconds) {
            ++end;
        }
        takeMoment(all.subspan(at, end - at), events);
        at = end;
    }
}

bool BoundSpans::holds(double seconds) const
{
    const auto behind = std::ranges::upper_bound(changes, seconds, {}, &Change::seconds);
    return behind != changes.begin() && (behind - 1)->isBound;
}

void BoundSpans::takeMoment(std::span<const SequencerEvent> moment, const SequencerEvents& events)
{
    const double seconds = moment.front().seconds;
    for (const SequencerEvent& event : moment) {
        if (event.kind == SequencerEvent::noteOff) {
            countKey(event);
        } else if (!isNote(event)) {
            takeMessage(event, events);
        }
    }
    note(seconds);
    for (const SequencerEvent& event : moment) {
        if (event.kind == SequencerEvent::noteOn) {
            countKey(event);
        }
    }
    note(std::nextafter(seconds, std::numeric_limits<double>::infinity()));
}

void BoundSpans::takeMessage(const SequencerEvent& event, const SequencerEvents& events)
{
    if (event.kind != SequencerEvent::longMessage) {
        channels.apply(event.bytes);
        update(channelOf(event.bytes));
        return;
    }
    channels.apply(ExclusiveChange::of(events.longMessages[event.longIndex]));
    for (int channel = 0; channel < channelCount; ++channel) {
        update(channel);
    }
}

void BoundSpans::countKey(const SequencerEvent& note)
{
    const int channel = channelOf(note.bytes);
    keysDown[static_cast<std::size_t>(channel)] += note.kind == SequencerEvent::noteOn ? 1 : -1;
    update(channel);
}

void BoundSpans::update(int channel)
{
    const auto place = static_cast<std::size_t>(channel);
    const ChannelState& state = channels[channel];
    const auto isDown = [&state](int pedal) { return state.controller(pedal) >= down; };
    const bool isOneVoice = isDown(CONTROLLER_LEGATO) || state.isMonophonic();
    bound[place] = isDown(CONTROLLER_SOSTENUTO) || isDown(CONTROLLER_PORTA) || isMadeLouder(state) ||
                   (isOneVoice && keysDown[place] > 0);
}

void BoundSpans::note(double seconds)
{
    const bool wasBound = !changes.empty() && changes.back().isBound;
    if (bound.any() != wasBound) {
        changes.push_back({seconds, bound.any()});
    }
}

} // namespace volvelle
