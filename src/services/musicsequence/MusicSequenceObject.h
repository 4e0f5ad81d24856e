#pragma once

#include "services/musicsequence/MusicSequence.h"

#include <cstdint>
#include <optional>
#include <string>
#include <vector>

namespace volvelle {

// A sequence: its tempo track, its tracks in order, and what its last load had to tell. [any]
class MusicSequenceObject {
public:
    MusicSequenceObject();
    ~MusicSequenceObject();
    MusicSequenceObject(const MusicSequenceObject&) = delete;
    MusicSequenceObject& operator=(const MusicSequenceObject&) = delete;

    MusicTrack tempoTrack; // never null
    std::vector<MusicTrack> tracks;
    std::vector<std::string> loadWarnings;
    std::int16_t loadDivision = 480; // ticks to the beat

    // The place in the list, without a value for a track that is not in it.
    std::optional<std::uint32_t> indexOf(const MusicTrack& track) const;

    // Takes a track out of the list.
    void remove(std::uint32_t index);

    // Puts other tracks, which belong to this sequence, in the place of all in the list.
    void replaceTracks(std::vector<MusicTrack> newTracks);
};

} // namespace volvelle
