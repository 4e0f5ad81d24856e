#include "rendering/BoundSpans.h"

#include "wire/DeviceChannels.h"

#include <algorithm>
#include <array>
#include <bitset>
#include <limits>
#include <span>
#include <utility>

namespace volvelle {

namespace {

constexpr int on = 64;

std::size_t keyOf(const SequencerEvent& note)
{
    return note.bytes[1] & 0x7FU;
}

} // namespace

// Walks through a piece and knows what sounds.
class BoundSpans::Finder {
public:
    explicit Finder(const SequencerEvents& events);

    std::vector<Span> takeSpans();

private:
    struct Key {
        double begin = 0.0; // seconds, of its last strike
        int down = 0;       // strikes that are not over
        bool isHeld = false;
        bool isSustained = false; // by the sostenuto

        bool sounds() const { return down > 0 || isHeld || isSustained; }
    };

    struct Channel {
        std::array<Key, 128> keys;
        std::bitset<128> down;
        bool holds = false; // by a pedal that takes all keys
        bool sustains = false;
        bool isLegato = false;
        double glideBegin = -1.0; // seconds, of legato with portamento; -1 without
    };

    void takeMoment(std::span<const SequencerEvent> moment);
    void takeMessage(const SequencerEvent& event);
    void strike(const SequencerEvent& note);
    void release(const SequencerEvent& note, double seconds);
    void update(int number, double seconds);
    void bindKeysDown(const Channel& channel, double seconds);
    void bind(double begin, double end);

    const SequencerEvents& events;
    DeviceChannels states;
    std::array<Channel, channelCount> channels;
    std::vector<Span> spans; // as they end
};

BoundSpans::Finder::Finder(const SequencerEvents& events) : events(events)
{
    const std::span<const SequencerEvent> all(events.events);
    for (std::size_t at = 0; at < all.size();) {
        std::size_t end = at + 1;
        while (end < all.size() && all[end].seconds == all[at].seconds) {
            ++end;
        }
        takeMoment(all.subspan(at, end - at));
        at = end;
    }
    for (const Channel& channel : channels) {
        if (channel.glideBegin >= 0.0) {
            bind(channel.glideBegin, std::numeric_limits<double>::infinity());
        }
    }
}

// Joined where they meet.
std::vector<BoundSpans::Span> BoundSpans::Finder::takeSpans()
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
    return std::move(spans);
}

// As a sequencer sends it: first the ends of what began earlier.
void BoundSpans::Finder::takeMoment(std::span<const SequencerEvent> moment)
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
            takeMessage(event);
        }
    }
}

void BoundSpans::Finder::takeMessage(const SequencerEvent& event)
{
    if (event.kind != SequencerEvent::longMessage) {
        states.apply(event.bytes);
        update(channelOf(event.bytes), event.seconds);
        return;
    }
    const ExclusiveChange change = ExclusiveChange::of(events.longMessages[event.longIndex]);
    states.apply(change);
    for (int number = 0; change.resets && number < channelCount; ++number) {
        update(number, event.seconds);
    }
}

void BoundSpans::Finder::strike(const SequencerEvent& note)
{
    Channel& channel = channels[static_cast<std::size_t>(channelOf(note.bytes))];
    Key& key = channel.keys[keyOf(note)];
    if (key.sounds()) {
        bind(key.begin, note.seconds);
    }
    if (channel.isLegato) {
        bindKeysDown(channel, note.seconds);
    }
    key.begin = note.seconds;
    ++key.down;
    channel.down.set(keyOf(note));
}

void BoundSpans::Finder::release(const SequencerEvent& note, double seconds)
{
    Channel& channel = channels[static_cast<std::size_t>(channelOf(note.bytes))];
    Key& key = channel.keys[keyOf(note)];
    if (channel.isLegato && channel.down.count() > 1) {
        bindKeysDown(channel, seconds);
    }
    if (--key.down <= 0) {
        key.down = 0;
        key.isHeld = channel.holds;
        channel.down.reset(keyOf(note));
    }
}

void BoundSpans::Finder::update(int number, double seconds)
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
        for (Key& key : channel.keys) {
            key.isHeld = key.isHeld && holds;
            key.isSustained = sustains && (channel.sustains ? key.isSustained : key.down > 0);
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

void BoundSpans::Finder::bindKeysDown(const Channel& channel, double seconds)
{
    double begin = seconds;
    for (std::size_t key = 0; channel.down.any() && key < channel.keys.size(); ++key) {
        begin = channel.down[key] ? std::min(begin, channel.keys[key].begin) : begin;
    }
    bind(begin, seconds);
}

void BoundSpans::Finder::bind(double begin, double end)
{
    if (begin < end) {
        spans.push_back({begin, end});
    }
}

BoundSpans::BoundSpans(const SequencerEvents& events) : spans(Finder(events).takeSpans()) {}

bool BoundSpans::holds(double seconds) const
{
    const auto behind = std::ranges::lower_bound(spans, seconds, {}, &Span::begin);
    return behind != spans.begin() && seconds <= (behind - 1)->end;
}

} // namespace volvelle
