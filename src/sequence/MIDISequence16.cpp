#include "sequence/MIDISequence16.h"

#include "base/Console.h"
#include "base/Text.h"
#include "services/musicsequence/TrackWalk.h"

namespace volvelle {

namespace {

MIDISequence16::EventRecord copyOf(const TrackEvent& event)
{
    switch (event.type) {
    case kMusicEventType_ExtendedNote:
        return event.record<ExtendedNoteOnEvent>();
    case kMusicEventType_ExtendedTempo:
        return event.record<ExtendedTempoEvent>();
    case kMusicEventType_User:
        return event.record<MusicEventUserData>();
    case kMusicEventType_Meta:
        return event.record<MIDIMetaEvent>();
    case kMusicEventType_MIDINoteMessage:
        return event.record<MIDINoteMessage>();
    case kMusicEventType_MIDIChannelMessage:
        return event.record<MIDIChannelMessage>();
    case kMusicEventType_MIDIRawData:
        return event.record<MIDIRawData>();
    case kMusicEventType_Parameter:
        return event.record<ParameterEvent>();
    default:
        return {};
    }
}

} // namespace

MIDISequence16::MIDISequence16()
{
    maxTracks = trackCount;
    MIDISequence16::create(trackCount);
}

bool MIDISequence16::checkTracks()
{
    if (!musicSequence) {
        directPrint("Fehler: Die Sequenz ist undefiniert.");
        return false;
    }
    for (std::uint32_t index = 0; index < trackCount; ++index) {
        MusicTrack track;
        if (const OSStatus status = MusicSequenceGetIndTrack(musicSequence, index, track); status != noErr) {
            directPrint("Warnung: Die Sequenz ist nicht kompatibel. Es müssen 16 Spuren für 16 MIDI "
                        "Kanäle vorhanden sein. : ",
                        status);
            checkStatus(status);
            return false;
        }
    }
    return true;
}

std::vector<MIDISequence16::TimedMIDIEvent> MIDISequence16::getTrackEvents(int trackIndex)
{
    return getTrackEvents(getTrack(trackIndex));
}

std::vector<MIDISequence16::TimedMIDIEvent> MIDISequence16::getTrackEvents(const MusicTrack& track)
{
    const auto reportFailure = [this](WalkFailure failure, OSStatus status) {
        switch (failure) {
        case WalkFailure::makeIterator:
            return report("Fehler", status, "Es konnte kein Iterator erzeugt werden.");
        case WalkFailure::askCurrent:
            return report("Fehler", status, "Es konnte kein Event gefunden werden.");
        case WalkFailure::readEvent:
            return report("Fehler", status, "Es konnten keine Event Information abgerufen werden.");
        case WalkFailure::askNext:
            return report("Warnung", status, "Es konnte keine Folge Event ermittelt weren..");
        case WalkFailure::step:
            return report("Warnung", status,
                          "Das Folge Event konnte nicht abgerufen werden (Ende der Spur?).");
        }
    };
    std::vector<TimedMIDIEvent> events;
    walkTrack(track, reportFailure, [&events](const TrackEvent& event, const MusicEventIterator&) {
        const EventRecord record = copyOf(event);
        if (std::holds_alternative<std::monostate>(record)) {
            directPrint("Something or other ", event.type);
        } else {
            events.push_back({event.type, event.time, record});
        }
        return WalkStep::stepOn;
    });
    return events;
}

void MIDISequence16::play()
{
    if (!musicSequence) {
        directPrint("Fehler: Die Sequenz ist undefiniert.");
        return;
    }
    MusicPlayer player;
    if (const OSStatus status = NewMusicPlayer(player); status != noErr) {
        report("Fehler", status, "Der Player konnte nicht erzeugt werden.");
        return;
    }
    if (const OSStatus status = MusicPlayerSetSequence(player, musicSequence); status != noErr) {
        report("Fehler", status, "Die Sequenz konnte nicht dem Player zugeordnet werden.");
    }
    if (const OSStatus status = MusicPlayerPreroll(player); status != noErr) {
        report("Fehler", status, "Die Sequenz konnte nicht vorbereitet werden.");
    }
    if (const OSStatus status = MusicPlayerStart(player); status != noErr) {
        report("Fehler", status, "Die Sequenz konnte nicht gestartet werden.");
    }
}

void MIDISequence16::report(std::string_view word, OSStatus status, std::string_view text,
                            std::source_location place)
{
    directPrint(place.line(), " ", word, ": ", status, ". \n", text);
    checkStatus(status);
}

} // namespace volvelle
