#pragma once

#include "MIDISequences/AUMIDIEventEx.h"

#include <memory>
#include <vector>

namespace volvelle {

// Beats of a full turn where nothing tells them, and the fewest that there are.
inline constexpr double usualBeats = 16.0;

// What the circle asks for: the events that it draws and how long they last. [any]
class MIDICircleViewDelegate {
public:
    virtual ~MIDICircleViewDelegate() = default;

    // All events to draw; the order is that of drawing.
    virtual std::vector<std::shared_ptr<AUMIDIEventEx>> getEvents() = 0;

    // The length of the sequence in beats, above 0.
    virtual double getBeatCount() = 0;
};

} // namespace volvelle
