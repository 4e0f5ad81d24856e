#pragma once

#include "services/audiograph/sequencer/SequencerEvents.h"
#include "wire/DeviceChannels.h"

#include <vector>

namespace volvelle {

// Where in a piece notes hang on those before them, by sostenuto, legato or portamento on any channel: what
// begins there does not know them. [any]
class BoundSpans {
public:
    explicit BoundSpans(const SequencerEvents& events);

    bool holds(double seconds) const;

private:
    struct Change {
        double seconds = 0.0;
        bool isBound = false;
    };

    bool isBoundNow() const { return !changes.empty() && changes.back().isBound; }

    static bool mayChange(const SequencerState& state);
    static bool isBoundIn(const DeviceChannels& channels);

    std::vector<Change> changes; // each other than the one before
};

} // namespace volvelle
