#pragma once

#include "services/musicsequence/MusicSequence.h"
#include "services/musicsequence/smf/SMFFile.h"

#include <cstdint>
#include <span>

namespace volvelle {

// Reads a Standard MIDI File of any format, also one inside a RIFF file, and mends what it can. Every track
// chunk counts, whatever the header promises. Notes are paired per file track, channel and key, first in,
// first out; a note-off written as a note-on of velocity 0 has the release velocity 0. A division in frames a
// second becomes 480 ticks a beat at 120 beats a minute, without tempos. The separate sequences of format 2
// are laid one after another. fileFormatErr, with `file` as it was, where there is neither a header nor a
// track with an event. Its allocations, and those of a loading of what it gives, are 64 MiB and eight times
// the size of `bytes` at most, all added up; a track that asks for more ends early, and leaves something to
// those after it. [any]
[[nodiscard]] OSStatus readSMF(std::span<const std::uint8_t> bytes, SMFFile& file);

} // namespace volvelle
