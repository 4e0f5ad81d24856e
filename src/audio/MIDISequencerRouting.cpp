#include "audio/MIDISequencer.h"
#include "base/Checked.h"
#include "base/Console.h"
#include "base/Text.h"

#include <algorithm>
#include <utility>

namespace volvelle {

void MIDISequencer::setTrackPorts()
{
    if (!unit) {
        debugprint("MIDISequencer::setTrackPorts() : ERROR: The synthesizer is nil.");
        return;
    }
    required(sequencer).tempoTrack()->setDestinationAudioUnit(unit);
    for (const auto& track : sequencer->tracks()) {
        followLength(*track);
        debugprint("lengthInSeconds: ", lengthInSeconds, ", lengthInBeats: ", lengthInBeats);
        track->setDestinationAudioUnit(unit);
    }
}

void MIDISequencer::setTrackPorts(const std::vector<std::shared_ptr<AVAudioUnit>>& units)
{
    required(sequencer).tempoTrack()->setDestinationAudioUnit(checkedAt(units, 0));
    std::size_t index = 0;
    for (const auto& track : sequencer->tracks()) {
        followLength(*track);
        debugprint("lengthInSeconds: ", lengthInSeconds, ", lengthInBeats: ", lengthInBeats);
        const std::uint8_t channel =
            required(sequences).getChannelAssignment(checkedCast<std::uint8_t>(index++));
        if (std::cmp_less(units.size(), channel)) {
            debugprint(
                "MIDISequencer::setTrackPorts() : ERROR: The unit count is smaller than the channel number.");
            return;
        }
        track->setDestinationAudioUnit(checkedAt(units, channel));
    }
}

void MIDISequencer::setTrackPorts(const std::shared_ptr<AVAudioUnit>& toUnit)
{
    debugprint("MIDISequencer::setTrackPorts()");
    unit = toUnit;
    bool isFirst = true;
    for (const auto& track : required(sequencer).tracks()) {
        followLength(*track);
        if (isFirst) {
            debugprint(" - track 0 lengthInSeconds: ", track->lengthInSeconds,
                       ", lengthInBeats: ", track->lengthInBeats);
        }
        isFirst = false;
        track->setDestinationAudioUnit(toUnit);
    }
}

void MIDISequencer::setTrackPort(int channel, const std::shared_ptr<AVAudioUnit>& toUnit)
{
    if (channel < 0 || channel >= channelCount) {
        debugprint("MIDISequencer::setTrackPort() : ERROR: Channel out of index.");
        return;
    }
    const auto& tracks = required(sequencer).tracks();
    if (std::cmp_less(tracks.size(), channel)) {
        debugprint("MIDISequencer::setTrackPort() : ERROR: Track count is smaller than channel.");
        return;
    }
    checkedAt(tracks, channel)->setDestinationAudioUnit(toUnit);
}

void MIDISequencer::followLength(const AVMusicTrack& track)
{
    lengthInSeconds = std::max(lengthInSeconds, track.lengthInSeconds);
    lengthInBeats = std::max(lengthInBeats, track.lengthInBeats);
}

} // namespace volvelle
