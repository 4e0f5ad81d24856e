#include "audio/SequencedUnit.h"

#include "MIDISequences/RenderEventPool.h"
#include "MIDISequences/realtime/AUMIDISequencerHold.h"
#include "audio/SequencedMusic.h"
#include "base/Checked.h"
#include "services/audiograph/sequencer/SequencerEvents.h"

#include <set>
#include <utility>

namespace volvelle {

namespace {

constexpr double beatsPerSecond = FileTempo::usual / 60.0; // of the sequencer's list
constexpr const char* unreadable = "The music could not be read.";

} // namespace

SequencedUnit::SequencedUnit(std::shared_ptr<AUAudioUnit> played)
    : AUAudioUnit(required(played).componentDescription), instrument(std::move(played))
{
    audioUnitName = instrument->audioUnitName;
    contextName = instrument->contextName;
    inputBusses = instrument->inputBusses;
    outputBusses = instrument->outputBusses;
    MIDIOutputNames = instrument->MIDIOutputNames;
    parameterTree = instrument->parameterTree;
    takesMIDI = instrument->takesMIDI;
    instrument->setMIDIOutputEventBlock(
        [this](std::int64_t sampleTime, std::uint8_t cable, int length, const std::uint8_t* bytes) {
            return sendMIDIOutput(sampleTime, cable, length, bytes);
        });
    sequencer.setSamplerate(rate());
}

SequencedUnit::~SequencedUnit()
{
    instrument->setMIDIOutputEventBlock(nullptr);
}

Result<> SequencedUnit::load(const std::vector<std::uint8_t>& data)
{
    MusicSequence music;
    if (readSequencedMusic(data, music) != noErr) {
        stop();
        return failure(unreadable);
    }
    return load(music);
}

Result<> SequencedUnit::load(const MusicSequence& music)
{
    stop();
    FileTempo read(rate());
    if (read.read(music) != noErr) {
        return failure(unreadable);
    }
    announce(music);
    const AUMIDISequencerHold hold(busy);
    sequencer.loadSequence(music);
    std::swap(tempo, read);
    return {};
}

void SequencedUnit::announce(const MusicSequence& music)
{
    SequencerEvents events;
    if (events.read(music) != noErr) {
        return;
    }
    std::vector<AUMIDIProgram> programs;
    std::set<AUMIDIProgram> known;
    for (const SequencerProgram& program : events.programs) {
        const AUMIDIProgram entry{program.channel, program.bankMSB, program.bankLSB, program.program};
        if (known.insert(entry).second) {
            programs.push_back(entry);
        }
    }
    instrument->prepareToPlay(programs);
}

void SequencedUnit::start()
{
    const AUMIDISequencerHold hold(busy);
    isPaused = false;
    time = 0;
    fileFrames = 0;
    liftPedals();
    sequencer.start(0);
    ended = !sequencer.isPlaying();
}

void SequencedUnit::pause()
{
    const AUMIDISequencerHold hold(busy);
    if (!sequencer.isPlaying()) {
        return;
    }
    isPaused = true;
    sequencer.pause();
    pausedPedals = pedals;
    liftPedals();
}

void SequencedUnit::goOn()
{
    const AUMIDISequencerHold hold(busy);
    if (std::exchange(isPaused, false)) {
        sequencer._continue();
        sendPedals(pausedPedals);
    }
}

void SequencedUnit::stop()
{
    const AUMIDISequencerHold hold(busy);
    if (sequencer.isPlaying() || std::exchange(isPaused, false)) {
        liftPedals();
        sequencer.stop();
    }
}

// Only those that are down.
void SequencedUnit::sendPedals(const Pedals& values)
{
    for (std::uint8_t channel = 0; channel < channelCount; ++channel) {
        for (std::size_t i = 0; i < holdPedals.size(); ++i) {
            if (const std::uint8_t value = values[channel][i]; value > 0) {
                sequencer.sendEvent(channel, STATUS_CONTROLLER, holdPedals[i], value);
            }
        }
    }
}

void SequencedUnit::liftPedals()
{
    for (std::uint8_t channel = 0; channel < channelCount; ++channel) {
        for (std::size_t i = 0; i < holdPedals.size(); ++i) {
            if (std::exchange(pedals[channel][i], std::uint8_t{0}) > 0) {
                sequencer.sendEvent(channel, STATUS_CONTROLLER, holdPedals[i], 0);
            }
        }
    }
}

double SequencedUnit::positionInBeats() const
{
    return static_cast<double>(sequencer.getCurrentPositionInSamples()) / rate() * beatsPerSecond;
}

OSStatus SequencedUnit::setProperty(std::uint32_t property, std::uint32_t scope, std::uint32_t element,
                                    const void* data, std::uint32_t size)
{
    return instrument->setProperty(property, scope, element, data, size);
}

OSStatus SequencedUnit::musicDeviceMIDIEvent(std::uint32_t status, std::uint32_t data1, std::uint32_t data2,
                                             std::uint32_t sampleOffset)
{
    return instrument->musicDeviceMIDIEvent(status, data1, data2, sampleOffset);
}

void SequencedUnit::prepareToPlay(std::span<const AUMIDIProgram> programs)
{
    instrument->prepareToPlay(programs);
}

void SequencedUnit::engineStopped()
{
    stop();
    AUAudioUnit::engineStopped();
    instrument->engineStopped();
    wasStopped = true;
}

} // namespace volvelle
