#include "services/audiograph/sequencer/AVMusicTrack.h"

#include "services/audiograph/sequencer/AVAudioSequencer.h"

namespace volvelle {

void AVMusicTrack::setDestinationAudioUnit(std::shared_ptr<AVAudioUnit> unit)
{
    if (unit == destination) {
        return;
    }
    destination = std::move(unit);
    if (sequencer != nullptr) {
        sequencer->destinationChanged();
    }
}

} // namespace volvelle
