#include "MIDISequences/realtime/MIDIRecorder.h"

#include "base/Checked.h"
#include "base/Console.h"
#include "wire/MIDIConstants.h"

#include <algorithm>
#include <cmath>
#include <utility>

namespace volvelle {

namespace {

constexpr double usualTempo = 120.0;        // beats per minute
constexpr std::uint8_t usualRelease = 0x40; // velocity of an end that has none

const Clock& wallClock()
{
    static const WallClock wall;
    return wall;
}

std::uint16_t placeOf(std::uint8_t channel, std::uint8_t key)
{
    return static_cast<std::uint16_t>(channel << 8U | key);
}

} // namespace

MIDIRecorder::MIDIRecorder() : MIDIRecorder(wallClock()) {}

MIDIRecorder::MIDIRecorder(const Clock& newClock) : clock(newClock)
{
    maxTracks = trackCount;
    MIDISequence::create(trackCount);
}

void MIDIRecorder::setBeatPosition(double position)
{
    startPosition = position;
}

void MIDIRecorder::start()
{
    startTime = clock.now();
    isStarted = true;
    notes.clear();
}

void MIDIRecorder::pause()
{
    isStarted = false;
    notes.clear();
}

void MIDIRecorder::stop()
{
    isStarted = false;
    startTime = 0.0;
    startPosition = 0.0;
    notes.clear();
}

void MIDIRecorder::reset()
{
    if (sequenceNode) {
        sequenceNode->clear();
    }
}

double MIDIRecorder::getCurrentPositionInBeats()
{
    const double position = ((clock.now() - startTime) + startPosition) * beatsFactor;
    safeprint("Info: Momentane Position ist: ", position);
    return position;
}

bool MIDIRecorder::isRecording() const
{
    if (!isStarted) {
        safeprint("Warnung: Der MIDI Recorder wurde angehalten, empfängt aber Ereignisse.");
    }
    return isStarted;
}

void MIDIRecorder::noteOn(std::uint8_t channel, std::uint8_t note, std::uint8_t velocity)
{
    if (isRecording()) {
        notes[placeOf(channel, note)].push_back({.number = note,
                                                 .channel = channel,
                                                 .velocity = velocity,
                                                 .position = getCurrentPositionInBeats()});
    }
}

void MIDIRecorder::noteOff(std::uint8_t channel, std::uint8_t note, std::uint8_t velocity)
{
    if (!isRecording()) {
        return;
    }
    const double position = getCurrentPositionInBeats();
    const std::deque<Note> closed = std::exchange(notes[placeOf(channel, note)], {});
    for (Note each : closed) {
        each.release = velocity;
        each.duration = position - each.position;
        write(each);
    }
    if (closed.empty()) {
        safeprint("Warnung: Eine OFF Note konnte nicht zugeordnet werden.");
    }
}

void MIDIRecorder::controller(std::uint8_t /*channel*/, std::uint8_t /*number*/, std::uint8_t /*value*/) {}

void MIDIRecorder::setStartPosition(std::int64_t sampletime)
{
    startPosition = static_cast<double>(sampletime);
}

void MIDIRecorder::setTempofactor(double value)
{
    if (!std::isnan(value)) {
        tempoFactor = std::clamp(value, 0.1, 10.0);
    }
}

void MIDIRecorder::setRecordTempo(double value)
{
    if (std::isnan(value)) {
        return;
    }
    tempo = std::clamp(value, 12.0, 1200.0);
    setTempofactor(tempo / usualTempo);
    setTempo(value);
}

double MIDIRecorder::samplesToBeats(std::int64_t samplePosition)
{
    return static_cast<double>(samplePosition) / samplesPerBeat * (1.0 / tempoFactor);
}

double MIDIRecorder::beatsAt(std::int64_t position)
{
    return samplesToBeats(checkedSubtract(position, checkedCast<std::int64_t>(startPosition)));
}

void MIDIRecorder::write(const Note& note)
{
    createNoteEvent(note.position, note.channel, note.number, note.velocity, note.release,
                    static_cast<float>(note.duration));
}

void MIDIRecorder::noteOnAtSamplePosition(std::uint8_t channel, std::uint8_t note, std::uint8_t velocity,
                                          std::int64_t position)
{
    if (isRecording()) {
        notes[placeOf(channel, note)].push_back({.number = note,
                                                 .channel = channel,
                                                 .velocity = velocity,
                                                 .position = beatsAt(position),
                                                 .samplePosition = position});
    }
}

void MIDIRecorder::noteOffAtSamplePosition(std::uint8_t channel, std::uint8_t note, std::uint8_t velocity,
                                           std::int64_t position)
{
    if (!isRecording()) {
        return;
    }
    std::deque<Note>& open = notes[placeOf(channel, note)];
    if (open.empty()) {
        safeprint("Warnung: Eine OFF Note ", note, " auf Kanal ", channel,
                  " konnte nicht zugeordnet werden, an position ", position, ".");
        return;
    }
    Note closed = open.front();
    open.pop_front();
    close(closed, velocity, position);
}

void MIDIRecorder::close(Note& note, std::uint8_t velocity, std::int64_t position)
{
    note.sampleDuration = checkedSubtract(position, note.samplePosition);
    if (note.sampleDuration < 1) {
        safeprint("Warnung: MIDI Note mit der Länge 0 oder negativ wurde entfernt.");
        return;
    }
    const double end = beatsAt(position);
    note.release = velocity;
    note.duration = end - note.position;
    if (note.duration <= 0.0) {
        safeprint("ERROR: Die Dauer der Note ist ", note.duration, ", von ", note.position, " bis ", end,
                  ".");
    }
    write(note);
}

void MIDIRecorder::controllerAtSamplePosition(std::uint8_t channel, std::uint8_t number, std::uint8_t value,
                                              std::int64_t position)
{
    if (isRecording()) {
        createControllerEvent(beatsAt(position), channel, number, value);
    }
}

void MIDIRecorder::aftertouchAtSamplePosition(std::uint8_t channel, std::uint8_t /*number*/,
                                              std::uint8_t value, std::int64_t position)
{
    if (isRecording()) {
        createAfterTouchEvent(beatsAt(position), channel, value);
    }
}

void MIDIRecorder::pitchWheelAtSamplePosition(std::uint8_t channel, std::uint8_t number, std::uint8_t value,
                                              std::int64_t position)
{
    if (isRecording()) {
        createPitchWheelEvent(beatsAt(position), channel, number, value);
    }
}

void MIDIRecorder::polyPressureAtSamplePosition(std::uint8_t channel, std::uint8_t number, std::uint8_t value,
                                                std::int64_t position)
{
    if (isRecording()) {
        createPolyphonicPressureEvent(beatsAt(position), channel, number, value);
    }
}

void MIDIRecorder::programChangeAtSamplePosition(std::uint8_t channel, std::uint8_t /*number*/,
                                                 std::uint8_t value, std::int64_t position)
{
    if (isRecording()) {
        createProgramChangeEvent(beatsAt(position), channel, value);
    }
}

void MIDIRecorder::sysexAtSamplePosition(std::uint16_t length, const std::vector<std::uint8_t>& data,
                                         std::int64_t position)
{
    if (isRecording()) {
        createSysExEvent(beatsAt(position), length, data);
    }
}

void MIDIRecorder::metaAtSamplePosition(int length, const std::vector<std::uint8_t>& data,
                                        std::int64_t position, std::uint8_t type)
{
    if (isRecording()) {
        createMetaEvent(beatsAt(position), length, data, type);
    }
}

void MIDIRecorder::addAUMIDIEvent(const std::shared_ptr<AUMIDIEventEx>& event)
{
    const AUMIDIEvent record = required(event).event();
    const std::uint8_t status = record.data[0];
    if (status == STATUS_SYSEX) {
        sysexAtSamplePosition(checkedCast<std::uint16_t>(event->length()), event->array(),
                              record.eventSampleTime);
    } else if (status == STATUS_META) {
        metaAtSamplePosition(checkedCast<int>(event->length()), event->array(), record.eventSampleTime,
                             event->meta);
    } else if (status != STATUS_EOX && status >= STATUS_NOTEOFF && event->length() > 1) {
        addChannelEvent(record);
    }
}

void MIDIRecorder::addChannelEvent(const AUMIDIEvent& event)
{
    const std::int64_t position = event.eventSampleTime;
    const std::uint8_t channel = event.data[0] & 0x0F;
    const std::uint8_t first = event.data[1];
    const std::uint8_t second = event.data[2];
    switch (event.data[0] & 0xF0) {
    case STATUS_NOTEOFF:
    case STATUS_NOTEON:
        return addNoteEvent(event);
    case STATUS_CONTROLLER:
        return controllerAtSamplePosition(channel, first, second, position);
    case STATUS_PPRESSURE:
        return polyPressureAtSamplePosition(channel, first, second, position);
    case STATUS_CPRESSURE:
        return aftertouchAtSamplePosition(channel, first, first, position);
    case STATUS_PROGRAM:
        return programChangeAtSamplePosition(channel, first, first, position);
    case STATUS_PITCHBEND:
        return pitchWheelAtSamplePosition(channel, first, second, position);
    default:
        safeprint(event.data[0]);
    }
}

void MIDIRecorder::addNoteEvent(const AUMIDIEvent& event)
{
    const std::int64_t position = event.eventSampleTime;
    const std::uint8_t channel = event.data[0] & 0x0F;
    const std::uint8_t key = event.data[1];
    const std::uint8_t velocity = event.data[2];
    if (event.data[0] < STATUS_NOTEON) {
        noteOffAtSamplePosition(channel, key, velocity, position);
    } else if (velocity == 0) {
        noteOffAtSamplePosition(channel, key, usualRelease, position);
    } else {
        noteOnAtSamplePosition(channel, key, velocity, position);
    }
}

void MIDIRecorder::addAUMIDIEvents(const std::vector<std::shared_ptr<AUMIDIEventEx>>& events)
{
    for (const std::shared_ptr<AUMIDIEventEx>& event : events) {
        addAUMIDIEvent(event);
    }
}

} // namespace volvelle
