#include "MIDISequences/ChannelList.h"
#include "MIDISequences/realtime/AUMIDISequencerLine.h"
#include "MIDISequences/realtime/AUMIDISequencerOwning.h"
#include "base/Checked.h"

namespace volvelle {

void AUMIDISequencer::start(std::int64_t time)
{
    own([&] { startHeld(time); });
}

bool AUMIDISequencer::startAtOnce(std::int64_t time)
{
    return ownAtOnce([&] { startHeld(time); });
}

bool AUMIDISequencer::stopAtOnce()
{
    return ownAtOnce([this] { stopHeld(); });
}

void AUMIDISequencer::startHeld(std::int64_t time)
{
    stopHeld();
    currentSampleTime = time;
    sequencerStartTime = time;
    AUMIDISequencerLine::print("AUMIDISequencer::start() at ", time);
    if (eventCount == 0) {
        AUMIDISequencerLine::print("AUMIDISequencer::ERROR: There is no MIDI data available for playing.");
    } else {
        stopped = false;
    }
}

void AUMIDISequencer::stop()
{
    own([this] { stopHeld(); });
}

void AUMIDISequencer::stopHeld()
{
    suspendTime = checkedAdd<std::int64_t>(currentSampleTime, checkedCast<std::int64_t>(samplerate.load()));
    AUMIDISequencerLine::print("AUMIDISequencer::stop()");
    allNotesOff();
    allSoundsOff();
    resetControllers();
    resetPrograms();
    rewindHeld();
    stopped = true;
}

void AUMIDISequencer::pause()
{
    own([this] {
        AUMIDISequencerLine::print("AUMIDISequencer::pause()");
        pausedSampletime = currentSampleTime;
        allNotesOff();
        stopped = true;
    });
}

void AUMIDISequencer::_continue()
{
    own([this] {
        AUMIDISequencerLine::print("AUMIDISequencer::continue()");
        const auto passed = checkedSubtract<std::int64_t>(currentSampleTime, pausedSampletime);
        sequencerStartTime = checkedAdd<std::int64_t>(sequencerStartTime, passed);
        stopped = false;
    });
}

bool AUMIDISequencer::isPlaying() const
{
    return !stopped;
}

void AUMIDISequencer::rewind()
{
    own([this] { rewindHeld(); });
}

void AUMIDISequencer::rewindHeld()
{
    sequencerPosition = 0;
    currentSampleTime = 0;
    pausedSampletime = 0;
    suspendTime = 0;
    loopCount = 0;
    seekHeld(0.0);
    currentEventIndex = 0;
}

void AUMIDISequencer::seekToPosition(double value)
{
    own([&] { seekHeld(value); });
}

void AUMIDISequencer::seekHeld(double value)
{
    AUMIDISequencerLine::print("AUMIDISequencer::seek(", value, ")");
    seeking = true;
    const double share = value < 0.0 ? 0.0 : value > 1.0 ? 1.0 : value;
    const auto position = checkedCast<std::int64_t>(share * static_cast<double>(getDurationInSamples()));
    sequencerPositionV = position;
    if (const std::size_t index = list().firstFrom(position); index < list().size()) {
        currentEventIndex = checkedCast<int>(index);
    }
}

void AUMIDISequencer::seekToEvent(int index)
{
    own([&] {
        seeking = true;
        if (index >= 0 && index < eventCount) {
            currentEventIndex = index;
            sequencerPosition = list().stamp(static_cast<std::size_t>(index));
        }
    });
}

void AUMIDISequencer::solo(std::uint8_t channel)
{
    own([&] { soloChannel(channelFilter, channel); });
}

void AUMIDISequencer::mute(std::uint8_t channel)
{
    own([&] { muteChannel(channelFilter, channel); });
}

void AUMIDISequencer::unmute(std::uint8_t channel)
{
    own([&] { unmuteChannel(channelFilter, channel); });
}

void AUMIDISequencer::unmuteAll()
{
    own([this] { openAllChannels(channelFilter); });
}

void AUMIDISequencer::muteAll()
{
    own([this] { channelFilter.clear(); });
}

void AUMIDISequencer::transpose(int /*semitones*/) {}

} // namespace volvelle
