#include "audio/MIDISequencer.h"

#include "base/Checked.h"
#include "base/Console.h"
#include "base/MainQueue.h"
#include "base/RunLoop.h"
#include "base/Text.h"

#include <algorithm>
#include <utility>

namespace volvelle {

namespace {

constexpr double timerInterval = 0.03; // seconds
constexpr double leastLength = 1.0;    // seconds or beats

} // namespace

std::shared_ptr<MIDISequencer> MIDISequencer::make()
{
    return std::shared_ptr<MIDISequencer>(new MIDISequencer());
}

MIDISequencer::MIDISequencer() = default;

MIDISequencer::~MIDISequencer()
{
    stopTimer();
}

bool MIDISequencer::isPlaying() const
{
    return required(sequencer).isPlaying();
}

bool MIDISequencer::start()
{
    if (const Result<> begun = begin(0.0); !begun) {
        directPrint("MIDISequencer::start() : Error: The sequencer could not be started: ", begun.error());
        return false;
    }
    directPrint("MIDISequencer::start() : The sequencer is playing.");
    return true;
}

bool MIDISequencer::play()
{
    if (const Result<> begun = begin(currentPosition); !begun) {
        required(sequencer).setCurrentPositionInBeats(0.0);
        directPrint("MIDISequencer::play() : Error: The sequencer could not be started. Status: ",
                    begun.error());
        return false;
    }
    directPrint("MIDISequencer::play() : The sequencer is playing / continuing.");
    return true;
}

Result<> MIDISequencer::begin(double beats)
{
    if (isPlaying()) {
        stop();
    }
    required(sequencer).setCurrentPositionInBeats(beats);
    if (Result<> started = sequencer->start(); !started) {
        return started;
    }
    setupTimer();
    tellState("play");
    return {};
}

bool MIDISequencer::pause()
{
    if (isPlaying()) {
        sequencer->stop();
        tellState("pause");
    }
    currentPosition = required(sequencer).currentPositionInBeats();
    directPrint("MIDISequencer::pause() : The sequencer was paused.");
    return true;
}

bool MIDISequencer::stop()
{
    if (!isPlaying()) {
        return false;
    }
    sequencer->stop();
    stopTimer();
    sequencer->setCurrentPositionInBeats(0.0);
    tellState("stop");
    directPrint("MIDISequencer::stop() : The sequencer was stopped.");
    return true;
}

double MIDISequencer::getPosition()
{
    if (getLength() < required(sequencer).currentPositionInSeconds()) {
        if (isPlaying()) {
            stop();
        }
        sequencer->setCurrentPositionInBeats(0.0);
        directPrint("MIDISequencer::getPosition() : The sequencer has been finished.");
    }
    return sequencer->currentPositionInBeats();
}

double MIDISequencer::getLength() const
{
    return lengthInSeconds > 0.0 ? lengthInSeconds : leastLength;
}

double MIDISequencer::getBeats() const
{
    return lengthInBeats > 0.0 ? lengthInBeats : leastLength;
}

double MIDISequencer::getTime() const
{
    return required(sequencer).currentPositionInSeconds();
}

PropertyDictionary MIDISequencer::getInfo() const
{
    return required(sequencer).userInfo();
}

void MIDISequencer::setTempo(float factor)
{
    required(sequencer).setRate(factor);
}

void MIDISequencer::setPosition(float value)
{
    required(sequencer).setCurrentPositionInBeats(value);
}

void MIDISequencer::setupTimer()
{
    stopTimer();
    timer = mainRunLoop().schedule(timerInterval, weak_from_this(), [this] { onTimer(); });
}

void MIDISequencer::stopTimer()
{
    if (timer) {
        timer->invalidate();
        timer = nullptr;
    }
}

void MIDISequencer::onTimer()
{
    const double current = required(sequencer).currentPositionInBeats();
    if (current < lengthInBeats) {
        queue([current](MIDISequencer& self, MIDISequencerDelegate& listener) {
            listener.onSequencerProgress(current, self.lengthInBeats);
        });
        return;
    }
    stop();
    queue([](MIDISequencer&, MIDISequencerDelegate& listener) { listener.onSequencerComplete(); });
}

void MIDISequencer::tellState(std::string_view state)
{
    queue([state](MIDISequencer&, MIDISequencerDelegate& listener) {
        listener.onSequencerStateChanged(state);
    });
}

template <class Call>
void MIDISequencer::queue(Call call)
{
    if (delegate.expired()) {
        return;
    }
    mainQueue().post([self = shared_from_this(), call] {
        if (const auto listener = self->delegate.lock()) {
            call(*self, *listener);
        }
    });
}

void MIDISequencer::resetPatches()
{
    melodicPatches.assign(1, 0);
    rhythmicPatches.assign(1, 0);
    patches.assign(channelCount, 0);
}

std::uint8_t MIDISequencer::getPatch(int channel) const
{
    return channel >= 0 && channel < channelCount ? patches[static_cast<std::size_t>(channel)]
                                                  : std::uint8_t{0};
}

void MIDISequencer::foundProgramChangeEvent(const std::shared_ptr<MidiProgramChangeEvent>& event)
{
    const MidiProgramChangeEvent& change = required(event);
    checkedAt(patches, change.channel) = change.value;
    if (std::ranges::find(melodicPatches, change.value) == melodicPatches.end()) {
        melodicPatches.push_back(change.value);
    }
}

} // namespace volvelle
