#pragma once

#include "midi/NoteNames.h"

#include <array>
#include <string_view>

// Tables of names for diagnostics. They are constants of the program. [any]
namespace volvelle {

// Upper-case names of the status bytes, with System Exclusive after Tune Request and no end of exclusive.
extern const std::array<std::string_view, 18> MIDIStatusNames;

// Upper-case names of the meta types.
extern const std::array<std::string_view, 18> MIDIMetaNames;

// By controller number. General Purpose 3 and 4 stand swapped.
extern const std::array<std::string_view, 128> MIDIControllerNames;

// By key number, "C-2" to "G8", 60 is "C3". Row 37 lacks its octave.
extern const std::array<std::string_view, 128> MIDIKeyNames;

// The General MIDI sound set, by program number from 0.
extern const std::array<std::string_view, 128> MIDIPatchNames;

// The General MIDI percussion map, by key number; keys outside it have their key names.
extern const std::array<std::string_view, 128> MIDIDrumNames;

} // namespace volvelle
