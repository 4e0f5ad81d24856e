#pragma once

#include "services/musicsequence/MusicSequence.h"

#include <cstdint>
#include <vector>

namespace volvelle {

enum class SMFFormat : std::uint16_t {
    SingleTrack = 0, // tempo track and all tracks merged into one
    MultiTrack = 1   // the tempo track, then the tracks in order
};

// The bytes of a Standard MIDI File. Absolute times are rounded to the nearest tick, start and end of a note
// each by themselves. Note-offs stand before note-ons of one tick, save the off of a note of no length, which
// stands after its on. End of track is the later of a track's length and its last event. A second writing of
// the same events gives the same bytes.
// `resolution` is in ticks to the beat; 0 or less means 480. More than 65,535 tracks, a track of 4 GiB, an
// event of 256 MiB, gaps that take more than 64 MiB of fillers, or memory that does not suffice answers
// fileIOErr, with `data` as it was. [any]
[[nodiscard]] OSStatus writeSMF(const MusicSequence& sequence, SMFFormat format, std::int16_t resolution,
                                std::vector<std::uint8_t>& data);

} // namespace volvelle
