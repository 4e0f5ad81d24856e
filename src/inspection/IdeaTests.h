#pragma once

#include "hearing/Harmony.h"
#include "hearing/HeardNote.h"
#include "phrases/MIDIClipGenerator.h"

#include <array>
#include <string_view>

// What ideas are thrown away for. [any]
namespace volvelle {

struct IdeaTest {
    std::string_view name;
    double least; // share of the ideas that hold it, in a library that sounds well
};

// In the order of docs/ear.md.
inline constexpr std::array<IdeaTest, 8> ideaTests = {{
    {"tones sound outside the chord for 8 % of the time at most", 0.93},
    {"the bass meets half of the chord changes", 0.9},
    {"the bass sounds the root in half of the chords", 0.85},
    {"a kick lies under a quarter of the bass notes", 0.9},
    {"the poly-metric line is sparse, or 6 away from the lead in velocity", 0.93},
    {"three distinct chords, none for more than 8 beats", 1.0},
    {"four kicks", 0.95},
    {"the lead repeats its key in 30 % of its steps at most", 0.95},
}};

using IdeaResult = std::array<bool, ideaTests.size()>;

// Which of them the last arrangement of the generator holds.
IdeaResult testIdea(MIDIClipGenerator& generator);

// The notes of a channel's track, and the chords, on the grid.
HeardNotes heardNotes(MIDIClipGenerator& generator, int channel);
Harmony heardHarmony(MIDIClipGenerator& generator);

} // namespace volvelle
