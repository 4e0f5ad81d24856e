#include "sequence/MIDISequence.h"
#include "sequence/SequenceLog.h"
#include "sequence/SequenceReading.h"
#include "sequence/SequenceWalkReport.h"
#include "services/musicsequence/TrackWalk.h"

#include <algorithm>
#include <cstddef>

namespace volvelle {

namespace {

constexpr std::uint32_t maximalPayload = 1040; // bytes

void fill(MIDISequence& sequence, std::string_view kind, const std::uint8_t* bytes, std::uint32_t length,
          UserEvent& dest)
{
    const std::uint32_t count = std::min(length, maximalPayload);
    const std::vector<std::uint8_t> taken(bytes, bytes + count);
    dest.data.insert(dest.data.end(), taken.begin(), taken.end());
    std::string hex;
    for (const std::uint8_t byte : taken) {
        hex += hexadecimal(byte, ' ') + ' ';
    }
    sequence.diagnose(concat(kind, ": "));
    sequence.diagnose(concat(kind, " - uint8: ", taken));
    sequence.diagnose(concat(kind, " - hex: ", hex));
    sequence.diagnose(concat(kind, " - verbose: ", latinText(taken)));
}

} // namespace

void MIDISequence::musicSequenceToSequenceNode()
{
    if (!musicSequence) {
        logLine("MIDISequence::Fehler: Die Sequenz ist undefiniert.");
        return;
    }
    const auto self = weak_from_this().lock();
    channelAssignments.clear();
    patches.fill(0);
    required(sequenceNode).clear();
    sequenceLength = 0.0;
    diagnose("\nDiagnose:");
    diagnose("--------------------------------- MIDI Sequence ------------------------------------START");
    readTempoTrack();
    readTracks();
    diagnose("\nDiagnose:");
    diagnose("--------------------------------- MIDI Sequence -------------------------------------STOP\n");
}

void MIDISequence::readTempoTrack()
{
    MusicTrack track;
    if (const OSStatus status = MusicSequenceGetTempoTrack(musicSequence, track); status != noErr) {
        logLine("MIDISequence::Fehler: ", status, ". \nDie Tempo Spur konnte nicht ermittelt werden.");
        checkStatus(status);
        return;
    }
    getTrackLength(track);
    getTrackLoopInfo(track);
    getTrackTimeResolution(track);
    iterateEvents(track, -1);
}

void MIDISequence::readTracks()
{
    std::uint32_t count = 0;
    if (const OSStatus status = MusicSequenceGetTrackCount(musicSequence, count); status != noErr) {
        logLine("MIDISequence::Fehler: ", status, ". \nDie Anzahl der Spuren konnte nicht ermittelt werden.");
        checkStatus(status);
    }
    diagnose(concat("Diagnose: Es wurden ", count, " Spuren in der MIDI Datei gefunden."));
    for (std::uint32_t i = 0; i < count; ++i) {
        if (i >= maxTracks) {
            logLine("MIDISequence::Warnung: Die Anzahl der Spuren (", count,
                    ") in der Sequenz ist größer als das Maximum: ", maxTracks);
            break;
        }
        MusicTrack track;
        MusicSequenceGetIndTrack(musicSequence, i, track);
        getTrackLength(track);
        getTrackLoopInfo(track);
        getTrackOffsetTime(track);
        getTrackMuteStaus(track);
        getTrackSoloStatus(track);
        getTrackAutomatedParameters(track);
        iterateEvents(track, checkedCast<int>(i));
    }
}

void MIDISequence::iterateEvents(const MusicTrack& track, int index)
{
    const auto self = weak_from_this().lock();
    const auto assignment = std::make_shared<ChannelAssignment>();
    if (index >= 0 && index < 16) {
        assignment->index = index;
        channelAssignments.push_back(assignment);
    }
    if (!track) {
        logLine("Fehler: Die Spur ist undefiniert.");
        return;
    }
    SequenceReading reading(*this, index, *assignment);
    const auto report =
        sequenceWalkReport(*this, {"Fehler", "Zum Event konnten keine Informationen abgerufen werden."});
    const auto result = walkTrack(track, report, [&](const TrackEvent& event, const MusicEventIterator&) {
        ensureSongLength(event.time);
        reading.read(event);
        return WalkStep::stepOn;
    });
    if (result == WalkResult::empty) {
        diagnose("Diagnose: Die Spur enthält keine Daten.");
    }
}

void MIDISequence::fillMetaData(const MIDIMetaEvent* source, UserEvent& dest)
{
    const MIDIMetaEvent& record = required(source);
    fill(*this, "Metadata", record.data, record.dataLength, dest);
}

void MIDISequence::fillSysExData(const MIDIRawData* source, UserEvent& dest)
{
    const MIDIRawData& record = required(source);
    fill(*this, "SysExData", record.data, record.length, dest);
}

void MIDISequence::fillUserData(const MusicEventUserData* source, UserEvent& dest)
{
    const MusicEventUserData& record = required(source);
    fill(*this, "UserData", record.data, record.length, dest);
}

SequenceReading::SequenceReading(MIDISequence& owner, int trackIndex, MIDISequence::ChannelAssignment& record)
    : sequence(owner), index(trackIndex), assignment(record)
{
}

TrackNode& SequenceReading::node(Target target)
{
    SequenceNode& tree = required(sequence.sequenceNode);
    switch (target) {
    case Target::tempoTrack:
        return *tree.getTempoTrack();
    case Target::firstTrack:
        return required(tree.getTrack(0));
    case Target::ownTrack:
        break;
    }
    return required(tree.getTrack(checkedCast<std::uint16_t>(index)));
}

void SequenceReading::read(const TrackEvent& event)
{
    switch (event.type) {
    case kMusicEventType_MIDINoteMessage:
        return readNote(event);
    case kMusicEventType_ExtendedNote:
        return sequence.diagnose(
            concat("Diagnose: Extended Note Message: ", event.record<ExtendedNoteOnEvent>().instrumentID,
                   ", Position = ", event.time));
    case kMusicEventType_ExtendedTempo:
        return readTempo(event);
    case kMusicEventType_User:
        return readUserData(event);
    case kMusicEventType_Meta:
        return readMeta(event);
    case kMusicEventType_MIDIChannelMessage:
        return readChannel(event);
    case kMusicEventType_MIDIRawData:
        return readRawData(event);
    case kMusicEventType_Parameter:
        return readParameter(event);
    case kMusicEventType_AUPreset:
        return readPreset(event);
    default:
        return readUnknown(event);
    }
}

void SequenceReading::readNote(const TrackEvent& event)
{
    const auto& message = event.record<MIDINoteMessage>();
    assignment.channel = message.channel;
    take(std::make_shared<MidiNoteEvent>(event.time, message.duration, message.channel, message.note,
                                         message.velocity, message.releaseVelocity),
         Target::ownTrack, &SequenceFoundDelegate::foundNoteEvent);
}

void SequenceReading::readTempo(const TrackEvent& event)
{
    const auto tempo = nodeAt<TempoEvent>(event);
    tempo->value = event.record<ExtendedTempoEvent>().bpm;
    take(tempo, Target::tempoTrack, &SequenceFoundDelegate::foundTempoEvent);
}

void SequenceReading::readUserData(const TrackEvent& event)
{
    const auto* record = static_cast<const MusicEventUserData*>(event.payload);
    if (record == nullptr) {
        return logLine("MIDISequence::Fehler: Es wurde ein NULL Pointer als Event übergeben!");
    }
    const auto user = nodeAt<UserEvent>(event);
    user->length = record->length;
    sequence.fillUserData(record, *user);
    take(user, Target::firstTrack, &SequenceFoundDelegate::foundUserEvent);
}

void SequenceReading::readRawData(const TrackEvent& event)
{
    const auto* record = static_cast<const MIDIRawData*>(event.payload);
    if (record == nullptr) {
        return logLine("MIDISequence::Error: Sysex event pointer is nil.");
    }
    const auto exclusive = nodeAt<SystemExclusiveEvent>(event);
    exclusive->length = record->length;
    sequence.fillSysExData(record, *exclusive);
    take(exclusive, Target::ownTrack, &SequenceFoundDelegate::foundSysExEvent);
}

void SequenceReading::readParameter(const TrackEvent& event)
{
    sequence.diagnose(concat("Diagnose: MIDI Parameter Event: ID = ",
                             event.record<ParameterEvent>().parameterID, ", Position = ", event.time));
    take(nodeAt<AParameterEvent>(event), Target::firstTrack, &SequenceFoundDelegate::foundParameterEvent);
}

void SequenceReading::readPreset(const TrackEvent& event)
{
    sequence.diagnose(concat("Diagnose: MIDI AUPreset Event: ID = ", event.record<AUPresetEvent>().presetID,
                             ", Position = ", event.time));
    take(nodeAt<AAUPresetEvent>(event), Target::firstTrack, &SequenceFoundDelegate::foundAUPresetEvent);
}

void SequenceReading::readUnknown(const TrackEvent& event)
{
    sequence.diagnose(concat("Diagnose: Unbekanntes MIDI Event vom Type ", event.type,
                             ", Position = ", event.time, " erhalten."));
    take(nodeAt<UnknownEvent>(event), Target::firstTrack, &SequenceFoundDelegate::foundUnknownEvent);
}

} // namespace volvelle
