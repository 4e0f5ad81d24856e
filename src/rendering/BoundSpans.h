#pragma once

#include "services/audiograph/sequencer/SequencerEvents.h"
#include "wire/DeviceChannels.h"

#include <array>
#include <bitset>
#include <span>
#include <vector>

namespace volvelle {

// Where a piece cannot be cut, since a note before that place and one after it would change each other: a key
// that is down, or held by a pedal, is struck again; a note is bound by legato to a key that is down. [any]
class BoundSpans {
public:
    explicit BoundSpans(const SequencerEvents& events);

    // Whether a note that begins before, in seconds, and one that begins then or later are so bound.
    bool holds(double seconds) const;

private:
    struct Key {
        double begin = 0.0; // seconds, of its last strike
        int down = 0;       // strikes that are not over
        bool isHeld = false;
        bool isSustained = false; // by the sostenuto
    };

    struct Channel {
        std::array<Key, 128> keys;
        std::bitset<128> sounding; // down or held
        std::bitset<128> down;
        bool holds = false; // by a pedal that takes all keys
        bool sustains = false;
        bool isLegato = false;
        double glideBegin = -1.0; // seconds, of legato with portamento; -1 without
    };

    // After `begin` up to and with `end`, seconds.
    struct Span {
        double begin = 0.0;
        double end = 0.0;
    };

    void takeMoment(std::span<const SequencerEvent> moment, const SequencerEvents& events);
    void takeMessage(const SequencerEvent& event, const SequencerEvents& events);
    void strike(const SequencerEvent& note);
    void release(const SequencerEvent& note, double seconds);
    void letGo(Channel& channel, std::size_t number);
    void update(int number, double seconds);
    void bindKeysDown(const Channel& channel, double seconds);
    void bind(double begin, double end);
    void join();

    DeviceChannels states;
    std::array<Channel, channelCount> channels;
    std::vector<Span> spans; // by begin, apart from each other
};

} // namespace volvelle
