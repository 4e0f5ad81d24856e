#pragma once

#include "services/audiograph/sequencer/SequencerEvents.h"

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
    // After `begin` up to and with `end`, seconds.
    struct Span {
        double begin = 0.0;
        double end = 0.0;
    };

    class Finder;

    std::vector<Span> spans; // by begin, apart from each other
};

} // namespace volvelle
