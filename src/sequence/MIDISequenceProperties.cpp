#include "base/Checked.h"
#include "sequence/MIDISequence.h"
#include "sequence/SequenceLog.h"

namespace volvelle {

namespace {

template <class Value>
Value readProperty(const MusicTrack& track, MusicTrackProperty property, Value value,
                   std::string_view failure)
{
    std::uint32_t size = sizeof(Value);
    if (const OSStatus status = MusicTrackGetProperty(track, property, &value, size); status != noErr) {
        logLine("MIDISequence::Fehler: ", status, ". \n", failure);
    }
    return value;
}

template <class Value>
void writeProperty(const MusicTrack& track, MusicTrackProperty property, Value value,
                   std::string_view failure)
{
    if (const OSStatus status = MusicTrackSetProperty(track, property, &value, sizeof(Value));
        status != noErr) {
        logLine("MIDISequence::Fehler: ", status, ". \n", failure);
    }
}

} // namespace

double MIDISequence::getTrackLength(const MusicTrack& track)
{
    const double value = readProperty(track, kSequenceTrackProperty_TrackLength, 0.0,
                                      "Die Länge der Spur konnte nicht ermittelt werden.");
    diagnose(concat("Diagnose: Spur Länge: ", value));
    return value;
}

MusicTrackLoopInfo MIDISequence::getTrackLoopInfo(const MusicTrack& track)
{
    const auto value = readProperty(track, kSequenceTrackProperty_LoopInfo, MusicTrackLoopInfo{},
                                    "Loop Info für die Spur konnte nicht ermittelt werden.");
    diagnose(concat("Diagnose: Loop Dauer: ", value.loopDuration, ", Loop Anzahl: ", value.numberOfLoops));
    return value;
}

double MIDISequence::getTrackOffsetTime(const MusicTrack& track)
{
    const double value = readProperty(track, kSequenceTrackProperty_OffsetTime, -1.0,
                                      "Der Zeitverstaz der Spur konnte nicht ermittelt werden.");
    diagnose(concat("Diagnose: Zeitversatz: ", value));
    return value;
}

bool MIDISequence::getTrackMuteStaus(const MusicTrack& track)
{
    const bool value = readProperty(track, kSequenceTrackProperty_MuteStatus, false,
                                    "Die Stumm Schaltung der Spur konnte nicht ermittelt werden.");
    diagnose(concat("Diagnose: Stumm Schaltung: ", value));
    return value;
}

bool MIDISequence::getTrackSoloStatus(const MusicTrack& track)
{
    const bool value = readProperty(track, kSequenceTrackProperty_SoloStatus, false,
                                    "Die Solo Schaltung der Spur konnte nicht ermittelt werden.");
    diagnose(concat("Diagnose: Solo Schaltung: ", value));
    return value;
}

bool MIDISequence::getTrackAutomatedParameters(const MusicTrack& track)
{
    const bool value = readProperty(track, kSequenceTrackProperty_AutomatedParameters, false,
                                    "Die Automations Info der Spur konnte nicht ermittelt werden.");
    diagnose(concat("Diagnose: Automations Spur: ", value));
    return value;
}

std::int16_t MIDISequence::getTrackTimeResolution(const MusicTrack& track)
{
    const auto value = readProperty(track, kSequenceTrackProperty_TimeResolution, std::int16_t{0},
                                    "Die Zeitauflösung der Spur konnte nicht ermittelt werden.");
    diagnose(concat("Diagnose: Zeitauflösung der Spur: ", value));
    return value;
}

void MIDISequence::setTrackLength(const MusicTrack& track, double value)
{
    writeProperty(track, kSequenceTrackProperty_TrackLength, value < 0.0 ? 0.0 : value,
                  "Die Länge der Spur konnte nicht gesetzt werden.");
}

void MIDISequence::setOfssetTime(const MusicTrack& track, double offset)
{
    writeProperty(track, kSequenceTrackProperty_OffsetTime, offset,
                  "Der Zeitverstaz der Spur konnte nicht gestzt werden.");
}

void MIDISequence::setMuteStatus(const MusicTrack& track, bool value)
{
    writeProperty(track, kSequenceTrackProperty_MuteStatus, value,
                  "Die Stumm Schaltung der Spur konnte nicht gestzt werden.");
}

void MIDISequence::setSoloStatus(const MusicTrack& track, bool value)
{
    writeProperty(track, kSequenceTrackProperty_MuteStatus, value,
                  "Die Stumm Schaltung der Spur konnte nicht gesetzt werden.");
}

void MIDISequence::setLoopInfo(const MusicTrack& track, double from, double to, std::int32_t times)
{
    const double duration = to - from;
    const MusicTrackLoopInfo info{duration < 0.0 ? 4.0 : duration, times};
    const OSStatus status = MusicTrackSetProperty(track, kSequenceTrackProperty_LoopInfo, &info, sizeof info);
    if (status != noErr) {
        logLine("MIDISequence::Fehler: Die Loop Information konnte nicht zur Spur hinzugefügt werden: ",
                status);
    }
}

void MIDISequence::setAutomatedParameters(const MusicTrack& /*track*/) {}

void MIDISequence::setTimeResolution(const MusicTrack& /*track*/) {}

} // namespace volvelle
