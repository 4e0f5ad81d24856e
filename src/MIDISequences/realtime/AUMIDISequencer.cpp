#include "MIDISequences/realtime/AUMIDISequencer.h"

#include "MIDISequences/ChannelList.h"
#include "MIDISequences/realtime/AUMIDISequencerOwning.h"
#include "base/Checked.h"

#include <algorithm>
#include <cmath>

namespace volvelle {

namespace {

constexpr double slowest = 0.1;
constexpr double fastest = 10.0;

void storeTempo(std::atomic<double>& tempo, double value)
{
    if (!std::isnan(value)) {
        tempo = std::clamp(value, slowest, fastest);
    }
}

} // namespace

AUMIDISequencer::AUMIDISequencer()
    : phraseMixer(std::make_shared<MIDIPhraseMixer>()),
      current(new AUMIDISequencerList({}, std::make_shared<MIDISequence16>()))
{
    channelFilter.reserve(channelCount);
    openAllChannels(channelFilter);
    statusFilter.reserve(channelCount);
    internalEvents.reserve(MAXEVENTS);
}

AUMIDISequencer::~AUMIDISequencer()
{
    releaseRenderEvents(lastResult);
    delete current.load();
}

void AUMIDISequencer::reset()
{
    auto empty = std::make_unique<AUMIDISequencerList>(SequencerFile{}, sequence());
    own([&] {
        AUMIDIMonitor::reset();
        isMultiChannel = true;
        isLooping = false;
        currentFile.reset();
        currentChannel = 0;
        loopCount = 0;
        tempoFactor = 1.0;
        stopped = true;
        sequencerStartTime = 0;
        openAllChannels(channelFilter);
        realtimeEvents.clear();
        useListHeld(std::move(empty));
    });
}

void AUMIDISequencer::setSamplerate(double value)
{
    samplerate = value;
}

std::vector<std::shared_ptr<AUMIDIEventEx>> AUMIDISequencer::getEventList() const
{
    return list().events();
}

std::shared_ptr<AUMIDIEventEx> AUMIDISequencer::getCurrentEvent() const
{
    return list().event(static_cast<std::size_t>(currentEventIndex.load()));
}

int AUMIDISequencer::getCurrentEventIndex() const
{
    return currentEventIndex;
}

bool AUMIDISequencer::isEmpty() const
{
    return eventCount == 0;
}

std::shared_ptr<MIDISequence16> AUMIDISequencer::sequence() const
{
    return list().sequence;
}

std::int64_t AUMIDISequencer::getCurrentPositionInSamples() const
{
    return sequencerPositionV;
}

std::int64_t AUMIDISequencer::getDurationInSamples() const
{
    return durationInSamples;
}

double AUMIDISequencer::getCurrentPositionInBeats() const
{
    return getProgress() * getDurationInBeats();
}

double AUMIDISequencer::getDurationInBeats() const
{
    return durationInBeats;
}

double AUMIDISequencer::getPositionInSeconds() const
{
    return static_cast<double>(getCurrentPositionInSamples()) / samplerate;
}

double AUMIDISequencer::getDurationInSeconds() const
{
    return static_cast<double>(getDurationInSamples()) / samplerate;
}

double AUMIDISequencer::getCurrentTimeInSeconds() const
{
    return static_cast<double>(checkedSubtract<std::int64_t>(currentSampleTime, sequencerStartTime)) /
           samplerate;
}

double AUMIDISequencer::getProgress() const
{
    const std::int64_t duration = getDurationInSamples();
    return duration == 0 ? 0.0
                         : static_cast<double>(getCurrentPositionInSamples()) / static_cast<double>(duration);
}

void AUMIDISequencer::setTempoFactor(double value)
{
    storeTempo(tempoFactor, value);
}

double AUMIDISequencer::getTempoFactor() const
{
    return tempoFactor;
}

void AUMIDISequencer::setRate(double value)
{
    storeTempo(tempoRate, value);
}

double AUMIDISequencer::getRate() const
{
    return tempoRate;
}

void AUMIDISequencer::exclusively(const std::function<void()>& body)
{
    std::shared_ptr<AUMIDISequencerDelegate> before;
    own([&] {
        before = delegate;
        body();
        if (before != delegate) {
            before.swap(retiredDelegate);
        }
    });
}

void AUMIDISequencer::tell(const Told& told)
{
    if (!told.listener) {
        return;
    }
    if (told.isComplete) {
        told.listener->onAUSequencerComplete();
    }
    if (told.loop) {
        told.listener->onAUSequencerLoop(*told.loop);
    }
    if (told.isLoaded) {
        told.listener->onAUSequencerLoaded();
    }
}

} // namespace volvelle
