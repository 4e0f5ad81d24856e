#include "rendering/BoundSpans.h"

#include <algorithm>
#include <limits>
#include <tuple>

namespace volvelle {

namespace {

constexpr int on = 64;

std::size_t keyOf(const SequencerEvent& note)
{
    return note.bytes[1] & 0x7FU;
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
    for (const Channel& channel : channels) {
        if (channel.glideBegin >= 0.0) {
            bind(channel.glideBegin, std::numeric_limits<double>::infinity());
        }
    }
    join();
}

bool BoundSpans::holds(double seconds) const
{
    const auto behind = std::ranges::lower_bound(spans, seconds, {}, &Span::begin);
    return behind != spans.begin() && seconds <= (behind - 1)->end;
}

// As a sequencer sends it: first the ends of what began earlier.
void BoundSpans::takeMoment(std::span<const SequencerEvent> moment, const SequencerEvents& events)
{
    const double seconds = moment.front().seconds;
    for (const SequencerEvent& event : moment) {
        if (event.kind == SequencerEvent::noteOff && event.partner < seconds) {
            release(event, seconds);
        }
    }
    for (const SequencerEvent& event : moment) {
        if (event.kind == SequencerEvent::noteOn) {
            strike(event);
            if (event.partner <= seconds) {
                release(event, seconds);
            }
        } else if (event.kind != SequencerEvent::noteOff) {
            takeMessage(event, events);
        }
    }
}

void BoundSpans::takeMessage(const SequencerEvent& event, const SequencerEvents& events)
{
    if (event.kind != SequencerEvent::longMessage) {
        states.apply(event.bytes);
        update(channelOf(event.bytes), event.seconds);
        return;
    }
    states.apply(ExclusiveChange::of(events.longMessages[event.longIndex]));
    for (int number = 0; number < channelCount; ++number) {
        update(number, event.seconds);
    }
}

void BoundSpans::strike(const SequencerEvent& note)
{
    Channel& channel = channels[static_cast<std::size_t>(channelOf(note.bytes))];
    Key& key = channel.keys[keyOf(note)];
    if (channel.sounding[keyOf(note)]) {
        bind(key.begin, note.seconds);
    }
    if (channel.isLegato) {
        bindKeysDown(channel, note.seconds);
    }
    key.begin = note.seconds;
    ++key.down;
    channel.sounding.set(keyOf(note));
    channel.down.set(keyOf(note));
}

void BoundSpans::release(const SequencerEvent& note, double seconds)
{
    Channel& channel = channels[static_cast<std::size_t>(channelOf(note.bytes))];
    Key& key = channel.keys[keyOf(note)];
    if (channel.isLegato && channel.down.count() > 1) {
        bindKeysDown(channel, seconds);
    }
    if (--key.down <= 0) {
        key.down = 0;
        key.isHeld = channel.holds;
        letGo(channel, keyOf(note));
    }
}

void BoundSpans::letGo(Channel& channel, std::size_t number)
{
    const Key& key = channel.keys[number];
    channel.down.set(number, key.down > 0);
    channel.sounding.set(number, key.down > 0 || key.isHeld || key.isSustained);
}

void BoundSpans::update(int number, double seconds)
{
    Channel& channel = channels[static_cast<std::size_t>(number)];
    const ChannelState& state = states[number];
    const auto isOn = [&state](int controller) { return state.controller(controller) >= on; };
    const bool isLegato = isOn(CONTROLLER_LEGATO);
    const bool holds = isOn(CONTROLLER_SUSTAIN) || isOn(CONTROLLER_HOLD2);
    const bool sustains = isOn(CONTROLLER_SOSTENUTO);
    if (isLegato != channel.isLegato) {
        bindKeysDown(channel, seconds);
    }
    if (holds != channel.holds || sustains != channel.sustains) {
        for (std::size_t key = 0; key < channel.keys.size(); ++key) {
            Key& changed = channel.keys[key];
            changed.isHeld = changed.isHeld && holds;
            changed.isSustained = sustains && (channel.sustains ? changed.isSustained : changed.down > 0);
            letGo(channel, key);
        }
    }
    channel.isLegato = isLegato;
    channel.holds = holds;
    channel.sustains = sustains;
    const bool glides = isLegato && isOn(CONTROLLER_PORTA);
    if (glides && channel.glideBegin < 0.0) {
        channel.glideBegin = seconds;
    } else if (!glides && channel.glideBegin >= 0.0) {
        bind(channel.glideBegin, seconds);
        channel.glideBegin = -1.0;
    }
}

void BoundSpans::bindKeysDown(const Channel& channel, double seconds)
{
    double begin = seconds;
    for (std::size_t key = 0; channel.down.any() && key < channel.keys.size(); ++key) {
        begin = channel.down[key] ? std::min(begin, channel.keys[key].begin) : begin;
    }
    bind(begin, seconds);
}

void BoundSpans::bind(double begin, double end)
{
    if (begin < end) {
        spans.push_back({begin, end});
    }
}

void BoundSpans::join()
{
    std::ranges::sort(spans, {}, &Span::begin);
    std::size_t count = 0;
    for (const Span& span : spans) {
        if (count > 0 && span.begin <= spans[count - 1].end) {
            spans[count - 1].end = std::max(spans[count - 1].end, span.end);
        } else {
            spans[count++] = span;
        }
    }
    spans.resize(count);
}

} // namespace volvelle
