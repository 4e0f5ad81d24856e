#pragma once

#include "services/audiograph/graph/AVAudioUnit.h"
#include "services/musicsequence/MusicSequence.h"

#include <memory>

namespace volvelle {

class AVAudioSequencer;

// A track of a sequencer's content. It lives as long as someone holds it; once the content was replaced, or
// the sequencer died, its destination has no effect any more. [main]
class AVMusicTrack {
public:
    AVMusicTrack(AVAudioSequencer* owner, double beats, double seconds)
        : lengthInBeats(beats), lengthInSeconds(seconds), sequencer(owner)
    {
    }

    const double lengthInBeats;   // with the silence up to the end of the track
    const double lengthInSeconds; // the same by the tempo track, at rate 1.0

    // Where the events go; null for nowhere, as at first. A change while it plays ends what sounds and brings
    // the new destination up to date.
    void setDestinationAudioUnit(std::shared_ptr<AVAudioUnit> unit);

    const std::shared_ptr<AVAudioUnit>& destinationAudioUnit() const { return destination; }

private:
    friend class AVAudioSequencer;

    std::shared_ptr<AVAudioUnit> destination;
    AVAudioSequencer* sequencer; // null once the track is out of use
};

} // namespace volvelle
