#pragma once

// How MIDISequence reports the failures of a walk. For the sources of this folder.

#include "sequence/MIDISequence.h"
#include "services/musicsequence/TrackWalk.h"

namespace volvelle {

// `readFailure` is the line's word and its text for an event that cannot be read; the other failures have one
// text each. The report must not outlive the sequence.
struct ReadFailureText {
    std::string_view word; // "Fehler" or "Warnung"
    std::string_view text;
};

WalkReport sequenceWalkReport(MIDISequence& sequence, ReadFailureText readFailure);

} // namespace volvelle
