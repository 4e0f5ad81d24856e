#pragma once

#include "services/musicsequence/MusicSequence.h"

#include <cstdint>
#include <string_view>

namespace volvelle {

class MIDISequence;

// What the reading of a whole sequence says besides its walks: here what MIDISequence says. Must not outlive
// the sequence.
class SequenceReadingReport {
public:
    explicit SequenceReadingReport(MIDISequence& owner) : sequence(owner) {}

    virtual ~SequenceReadingReport() = default;
    SequenceReadingReport(const SequenceReadingReport&) = delete;
    SequenceReadingReport& operator=(const SequenceReadingReport&) = delete;

    // Stands in the lines that frame the diagnosis.
    virtual std::string_view title() const { return "MIDI"; }

    // The tempo track; null, after its lines, on failure.
    virtual MusicTrack tempoTrack();

    virtual void countFailed(OSStatus status);
    virtual void tooManyTracks(std::uint32_t count);

    // Stand before what is read of a track.
    virtual void tempoTrackFollows() {}

    virtual void trackFollows(std::uint32_t /*index*/) {}

protected:
    MIDISequence& sequence;
};

} // namespace volvelle
