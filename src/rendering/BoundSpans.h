#pragma once

#include "services/audiograph/sequencer/SequencerEvents.h"
#include "wire/DeviceChannels.h"

#include <array>
#include <bitset>
#include <span>
#include <vector>

namespace volvelle {

// Where in a piece notes hang on those before them, on any channel: by sostenuto or portamento, and, while a
// key is down, by legato or a channel that sounds one note at a time. What begins there does not know them.
// So, too, where a channel is made louder by its parameter, and no note is soft enough to be unheard. [any]
class BoundSpans {
public:
    explicit BoundSpans(const SequencerEvents& events);

    // Just before the notes that begin there.
    bool holds(double seconds) const;

private:
    struct Change {
        double seconds = 0.0;
        bool isBound = false;
    };

    void takeMoment(std::span<const SequencerEvent> moment, const SequencerEvents& events);
    void takeMessage(const SequencerEvent& event, const SequencerEvents& events);
    void countKey(const SequencerEvent& note);
    void update(int channel);
    void note(double seconds);

    DeviceChannels channels;
    std::array<int, channelCount> keysDown{};
    std::bitset<channelCount> bound;
    std::vector<Change> changes; // each other than the one before
};

} // namespace volvelle
