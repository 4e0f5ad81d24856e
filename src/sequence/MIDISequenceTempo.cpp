#include "base/Checked.h"
#include "midi/ConvertTempo.h"
#include "midi/MIDIConstants.h"
#include "sequence/MIDISequence.h"
#include "sequence/SequenceLog.h"
#include "sequence/SequenceWalkReport.h"
#include "services/musicsequence/TrackWalk.h"

#include <cmath>

namespace volvelle {

namespace {

constexpr std::string_view undefinedSequence = "MIDISequence::Fehler: Die Sequenz ist undefiniert.";

// Visits the tempo events of a track; others are reported and passed over.
void walkTempoTrack(MIDISequence& sequence, const MusicTrack& track, const WalkVisitor& visit)
{
    const auto report = sequenceWalkReport(
        sequence, {"Warnung", "Zum Event konnten keine Timestamp Informationen abgerufen werden."});
    const auto result =
        walkTrack(track, report, [&](const TrackEvent& event, const MusicEventIterator& iterator) {
            if (event.type == kMusicEventType_ExtendedTempo) {
                return visit(event, iterator);
            }
            logLine("MIDISequence::Warnung: Anderes MIDI Event auf der Tempospur vom Type ", event.type,
                    " gefunden.");
            return WalkStep::stepOn;
        });
    if (result == WalkResult::empty) {
        logLine("MIDISequence::Warnung: Die Spur enthält keine Daten.");
    }
}

std::vector<std::uint8_t> tempoBytes(double bpm)
{
    constexpr double safeTempo = 120.0; // stands in for what four bytes cannot hold
    const double product = bpm * 500000.0;
    const bool fits = product > -1.0 && product < 4294967296.0;
    ConvertTempo convert;
    return convert.tempoToBytes(fits ? bpm : safeTempo);
}

std::shared_ptr<AUMIDIEventEx> tempoEvent(double bpm, double position, double samplerate)
{
    const std::uint8_t tempo = bpm > 0.0 && bpm < 255.0 ? checkedCast<std::uint8_t>(bpm) : std::uint8_t{120};
    const std::vector<std::uint8_t> t = tempoBytes(bpm);
    const std::vector<std::uint8_t> bytes{STATUS_META, META_SETTEMPO, tempo, 0xFF, META_SETTEMPO,
                                          3,           t[0],          t[1],  t[2]};
    return std::make_shared<AUMIDIEventEx>(AURenderEventMIDI, bytes, static_cast<std::uint32_t>(bytes.size()),
                                           checkedCast<std::int64_t>(position / 2.0 * samplerate));
}

} // namespace

MusicTrack MIDISequence::getTempoTrack()
{
    required(musicSequence);
    MusicTrack track;
    if (const OSStatus status = MusicSequenceGetTempoTrack(musicSequence, track); status != noErr) {
        logLine("MIDISequence::Fehler: ", status, ". \nDie Tempo Spur konnte nicht ermittelt werden.");
        checkStatus(status);
        return nullptr;
    }
    return track;
}

double MIDISequence::getTempo()
{
    return currentTempo;
}

void MIDISequence::setTempo(double tempo)
{
    if (!musicSequence) {
        logLine("MIDISequence::Fehler: Die Sequenz ist undefiniert. Tempo kann nicht gesetzt werden.");
        return;
    }
    currentTempo = tempo;
    const MusicTrack track = getTempoTrack();
    if (!track) {
        return;
    }
    removeTempoEvents(track);
    if (const OSStatus status = MusicTrackNewExtendedTempoEvent(track, 0.0, tempo); status != noErr) {
        logLine("MIDISequence::Fehler: ", status,
                ". \nDas Tempo für die Sequenz konnte nicht festgelegt weren.");
        checkStatus(status);
        return;
    }
    logLine("Das Tempo der Sequenz wurde auf ", tempo, " gesetzt.");
}

void MIDISequence::setTempo(double tempo, double at)
{
    if (!musicSequence) {
        logLine(undefinedSequence);
        return;
    }
    const MusicTrack track = getTempoTrack();
    if (!track) {
        return;
    }
    if (const OSStatus status = MusicTrackNewExtendedTempoEvent(track, at, tempo); status != noErr) {
        logLine("MIDISequence::Fehler: ", status,
                ". \nDas Tempo konnte nicht zur Tempo Spur hinzugefügt werden.");
        checkStatus(status);
        return;
    }
    logLine("MIDISequence::Info: Ein neues Tempo '", tempo, "' wurde in die Tempo Spur eingefügt.");
}

void MIDISequence::removeTempoEvents(const MusicTrack& track)
{
    if (!musicSequence) {
        logLine(undefinedSequence);
        return;
    }
    logLine("MIDISequence::Warnung: Alle Tempo Events werden aus der Spur gelöscht.");
    walkTempoTrack(*this, track, [this](const TrackEvent& event, const MusicEventIterator& iterator) {
        logLine("MIDISequence::Info: Lösche Extended Tempo Message: ", event.record<ExtendedTempoEvent>().bpm,
                ", Position = ", event.time);
        if (const OSStatus status = MusicEventIteratorDeleteEvent(iterator); status != noErr) {
            logLine("MIDISequence::Warnung: ", status, ". \nEin Tempo Event konnte nicht gelöscht werden.");
            checkStatus(status);
            return WalkStep::stepOn;
        }
        return WalkStep::stay;
    });
}

std::vector<std::shared_ptr<AUMIDIEventEx>> MIDISequence::getTempoEvents(const MusicTrack& track,
                                                                         double samplerate)
{
    std::vector<std::shared_ptr<AUMIDIEventEx>> events;
    if (!musicSequence) {
        logLine(undefinedSequence);
        return events;
    }
    walkTempoTrack(*this, track, [&](const TrackEvent& event, const MusicEventIterator&) {
        const double bpm = event.record<ExtendedTempoEvent>().bpm;
        logLine("MIDISequence::Info: Extended Tempo Event: ", bpm, ", Position = ", event.time);
        events.push_back(tempoEvent(bpm, event.time, samplerate));
        return WalkStep::stepOn;
    });
    return events;
}

} // namespace volvelle
