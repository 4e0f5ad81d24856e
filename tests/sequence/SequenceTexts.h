#pragma once

#include "midi/EventNodes.h"
#include "midi/TrackNode.h"
#include "services/musicsequence/MusicSequence.h"

#include <initializer_list>
#include <string>
#include <string_view>
#include <vector>

// What a sequence holds and says, as texts that tests compare whole.
namespace volvelle::test {

using Lines = std::vector<std::string>;

// A status that no operation gives by itself.
inline constexpr OSStatus someStatus = -7;

Lines join(std::initializer_list<Lines> parts);

// A line and the three of checkStatus after it.
Lines reported(std::string line, OSStatus status = someStatus,
               std::string_view text = "Etwas ist fehlgeschlagen.");

// What a walk of MIDISequence says past the last event.
Lines endOfTrack();

// The events of a track, for instance "8.0 note 2 60 100 0 4.0", "1.0 message 176 7 100",
// "0.0 meta 3 [65]", "0.0 raw [240, 247]", "0.0 tempo 120.0".
Lines contents(const MusicTrack& track);
Lines tempoContents(const MusicSequence& sequence);

// A node as "class position channel: fields".
std::string describe(const EventNode& node);
Lines describe(const PatternNode& node);

} // namespace volvelle::test
