#include "MIDISequences/realtime/AUMIDIRecorder.h"

#include "base/Checked.h"
#include "base/Console.h"
#include "wire/MIDIConstants.h"

#include <utility>

namespace volvelle {

namespace {

constexpr double usualTempo = 120.0; // beats per minute

} // namespace

AUMIDIRecorder::AUMIDIRecorder() : recorder(std::make_shared<MIDIRecorder>())
{
    autoClear = false;
    AUMIDIRecorder::reset();
    recorder->setRecordTempo(usualTempo);
}

void AUMIDIRecorder::reset()
{
    AUMIDIMonitor::reset();
    startTime = 0;
    eventPosition = 0;
    isStarted = false;
}

void AUMIDIRecorder::setSamplerate(double /*samplerate*/) {}

void AUMIDIRecorder::start(std::int64_t time)
{
    clearMonitoring();
    startTime = time;
    isStarted = true;
}

void AUMIDIRecorder::stop()
{
    startTime = 0;
    eventPosition = 0;
    isStarted = false;
}

void AUMIDIRecorder::pause()
{
    stop();
}

std::int64_t AUMIDIRecorder::getPosition() const
{
    return eventPosition;
}

int AUMIDIRecorder::getCount() const
{
    return getSize();
}

std::int64_t AUMIDIRecorder::getStartTime() const
{
    return startTime;
}

bool AUMIDIRecorder::isRecording() const
{
    return isStarted;
}

void AUMIDIRecorder::record(const AUMIDIEventEx& event)
{
    if (!isStarted || filterGhostNotes(event)) {
        return;
    }
    const AUMIDIEvent given = event.event();
    const std::int64_t position = checkedSubtract(given.eventSampleTime, startTime.load());
    const AUMIDIEventEx copy(given.eventType, event.data(), event.length(), position);
    eventPosition = position;
    realtimeprint("AUMIDIRecorder::record() : Recorded MIDI event: AUMIDIEventEx");
    addMonitoring(copy);
}

bool AUMIDIRecorder::filterGhostNotes(const AUMIDIEventEx& event) const
{
    const AUMIDIEvent record = event.event();
    const std::uint8_t kind = record.data[0] & 0xF0;
    return (kind == STATUS_NOTEON || kind == STATUS_NOTEOFF) && record.data[1] == 0;
}

void AUMIDIRecorder::save(const std::filesystem::path& url)
{
    if (writeDown()) {
        recorder->saveToFile(url);
    }
}

bool AUMIDIRecorder::writeDown(std::shared_ptr<MIDIRecorder> into)
{
    if (getCount() == 0) {
        debugprint("AUMIDIRecorder::save() : ERROR: The recorder list is empty.");
        return false;
    }
    recorder = into ? std::move(into) : std::make_shared<MIDIRecorder>();
    recorder->setRecordTempo(usualTempo);
    recorder->start();
    sort();
    recorder->addAUMIDIEvents(getEvents());
    recorder->stop();
    return true;
}

} // namespace volvelle
