#include "services/audiograph/sequencer/SequencerContent.h"

#include <algorithm>
#include <limits>
#include <tuple>

namespace volvelle {

namespace {

std::size_t placeOf(const SequencerEvent& note)
{
    return static_cast<std::size_t>(channelOf(note.bytes)) * 128 + note.bytes[1];
}

} // namespace

SequencerContent::SequencerContent(std::shared_ptr<const SequencerEvents> newEvents,
                                   const std::vector<std::shared_ptr<AVAudioUnit>>& destinations)
    : events(std::move(newEvents)), unitOfTrack(events->tracks.size(), -1)
{
    for (std::size_t track = 0; track < destinations.size() && track < unitOfTrack.size(); ++track) {
        const std::shared_ptr<AVAudioUnit>& node = destinations[track];
        if (node == nullptr) {
            continue;
        }
        auto unit = std::find_if(units.begin(), units.end(), [&](const Unit& u) { return u.node == node; });
        if (unit == units.end()) {
            units.push_back({node, 0, std::vector<std::uint16_t>(std::size_t{16} * 128), {}, {}, {}});
            unit = units.end() - 1;
        }
        unit->channels = static_cast<std::uint16_t>(unit->channels | events->tracks[track].channels);
        unitOfTrack[track] = static_cast<int>(unit - units.begin());
    }
    fillHistories();
}

void SequencerContent::fillHistories()
{
    for (const SequencerState& state : events->states) {
        const int place = unitOfTrack[state.track];
        if (place >= 0) {
            ChannelHistory& history = units[static_cast<std::size_t>(place)].history;
            if (state.isExclusive()) {
                history.addExclusive(state.seconds, events->longMessages[state.longIndex], state.longIndex);
            } else {
                history.add(state.seconds, state.bytes);
            }
        }
    }
}

void SequencerContent::send(const SequencerEvent& event, double offset) noexcept
{
    const int index = unitOfTrack[event.track];
    if (index < 0) {
        return;
    }
    Unit& unit = units[static_cast<std::size_t>(index)];
    AUAudioUnit& target = *unit.node->auAudioUnit();
    if (event.kind == SequencerEvent::longMessage) {
        return sendLong(unit, events->longMessages[event.longIndex], offset);
    }
    if (target.scheduleMIDIEventAt(offset, 0, event.length(), event.bytes.data()) == noErr) {
        take(unit, event);
    }
}

bool SequencerContent::isSounding(const SequencerEvent& note) const noexcept
{
    const int index = unitOfTrack[note.track];
    return index >= 0 && units[static_cast<std::size_t>(index)].sounding[placeOf(note)] > 0;
}

void SequencerContent::take(Unit& unit, const SequencerEvent& event) noexcept
{
    std::uint16_t& count = unit.sounding[placeOf(event)];
    if (event.kind == SequencerEvent::noteOn && count < std::numeric_limits<std::uint16_t>::max()) {
        ++count;
    }
    if (event.kind == SequencerEvent::noteOff && count > 0) {
        --count;
    }
}

void SequencerContent::sendShort(Unit& unit, const ShortMessage& message) noexcept
{
    std::ignore =
        unit.node->auAudioUnit()->scheduleMIDIEvent(0, 0, shortMessageLength(message[0]), message.data());
}

void SequencerContent::release(bool all) noexcept
{
    for (Unit& unit : units) {
        for (int channel = 0; channel < channelCount; ++channel) {
            releaseNotes(unit, channel);
            if ((unit.channels >> channel & 1) == 0) {
                continue;
            }
            for (const std::uint8_t pedal : holdPedals) {
                sendShort(unit, {statusOf(STATUS_CONTROLLER, channel), pedal, 0});
            }
            if (all) {
                sendShort(unit, {statusOf(STATUS_CONTROLLER, channel), CONTROLLER_NOTES_OFF, 0});
            }
        }
    }
}

void SequencerContent::releaseNotes(Unit& unit, int channel) noexcept
{
    for (int key = 0; key < 128; ++key) {
        std::uint16_t& count =
            unit.sounding[static_cast<std::size_t>(channel) * 128 + static_cast<std::size_t>(key)];
        for (; count > 0; --count) {
            sendShort(unit, {statusOf(STATUS_NOTEOFF, channel), static_cast<std::uint8_t>(key), 0});
        }
    }
}

void SequencerContent::silence() noexcept
{
    for (Unit& unit : units) {
        for (int channel = 0; channel < channelCount; ++channel) {
            if ((unit.heardChannels() >> channel & 1) != 0) {
                sendShort(unit, {statusOf(STATUS_CONTROLLER, channel), CONTROLLER_ALL_SOUND_OFF, 0});
            }
        }
    }
}

void SequencerContent::chase(double seconds) noexcept
{
    for (Unit& unit : units) {
        unit.history.find(seconds, unit.states);
        unit.node->auAudioUnit()->forgetSettings();
        findExclusives(unit, seconds);
        tellExclusives(unit);
        tellChannels(unit);
    }
}

void SequencerContent::findExclusives(Unit& unit, double seconds) const noexcept
{
    unit.exclusives.clear();
    unit.history.forEachExclusive(
        seconds, [&](std::uint32_t number) { unit.exclusives.apply(events->longMessages[number]); });
}

void SequencerContent::tellExclusives(Unit& unit) noexcept
{
    for (std::size_t i = 0; i < unit.exclusives.size(); ++i) {
        sendLong(unit, unit.exclusives[i], 0.0);
    }
}

void SequencerContent::tellChannels(Unit& unit) noexcept
{
    for (int channel = 0; channel < channelCount; ++channel) {
        if ((unit.heardChannels() >> channel & 1) != 0) {
            unit.states[channel].forEachMessage(
                channel, [&unit](const ShortMessage& message) { sendShort(unit, message); });
        }
    }
}

void SequencerContent::sendLong(Unit& unit, std::span<const std::uint8_t> bytes, double offset) noexcept
{
    std::ignore = unit.node->auAudioUnit()->scheduleMIDIEventAt(offset, 0, static_cast<int>(bytes.size()),
                                                                bytes.data());
}

std::uint16_t SequencerContent::Unit::heardChannels() const noexcept
{
    return static_cast<std::uint16_t>(channels | node->auAudioUnit()->heardChannels());
}

} // namespace volvelle
