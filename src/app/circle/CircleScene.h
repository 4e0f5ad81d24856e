#pragma once

#include "app/circle/CircleDrawing.h"
#include "app/circle/MIDICircleViewBase.h"
#include "wire/ShortMessage.h"

#include <array>
#include <cstdint>
#include <vector>

namespace volvelle {

// What a circle draws, kept from one picture to the next: as long as only the position moves, only the notes
// that become thick or thin are drawn anew. What it holds is always what `drawSymbolMain` would draw. [any]
class CircleScene {
public:
    struct Change {
        bool all = false;              // everything is new
        std::vector<int> arcs;         // else the arcs that are, ascending
        std::vector<CircleArc> before; // as these were
    };

    CircleDrawing drawing;

    // Whether other notes are thick at that position than are now.
    bool wouldMove(double position) const { return thickAt(position) != thick; }

    // Holds the drawing against the circle as it is now.
    Change update(MIDICircleViewBase& circle, const CGRect& frame, ResizingBehavior resizing);

private:
    // What an arc is made of besides the position.
    struct Note {
        int event; // index
        std::uint8_t status, number, velocity;
        double start, duration; // beats

        bool operator==(const Note&) const = default;
    };

    struct Ground {
        CGRect frame;
        int resizing = -1;
        bool hasDelegate = false;
        double beatCount = 0.0;
        double progression = 0.0;
        std::array<UIColor, channelCount> colors;

        bool operator==(const Ground&) const = default;
    };

    Ground ground;
    std::vector<Note> notes; // one for each arc
    std::vector<int> thick;  // arcs, ascending

    static std::vector<Note> notesOf(MIDICircleViewBase& circle);
    std::vector<int> thickAt(double position) const;
    static CircleDrawing record(MIDICircleViewBase& circle, const CGRect& frame, ResizingBehavior resizing);
    Change redraw(MIDICircleViewBase& circle, const CGRect& frame, ResizingBehavior resizing,
                  std::vector<int> arcs);
};

} // namespace volvelle
