#include "sequence/SequenceReader.h"

#include "base/Checked.h"
#include "sequence/EventKinds.h"
#include "sequence/SequenceLog.h"
#include "sequence/SequenceWalkReport.h"

#include <algorithm>
#include <tuple>
#include <utility>

namespace volvelle {

namespace {

constexpr std::uint32_t maximalPayload = 1040; // bytes

// The status byte without channel, or the meta type, by which an event's row is found.
std::uint8_t codeOf(const TrackEvent& event)
{
    switch (event.type) {
    case kMusicEventType_MIDINoteMessage:
        return STATUS_NOTEON;
    case kMusicEventType_MIDIRawData:
        return STATUS_SYSEX;
    case kMusicEventType_Meta:
        return event.record<MIDIMetaEvent>().metaEventType;
    case kMusicEventType_MIDIChannelMessage: {
        const std::uint8_t status = event.record<MIDIChannelMessage>().status;
        return status < STATUS_SYSEX ? status & 0xF0U : status;
    }
    default:
        return 0;
    }
}

// A record of variable length that is not there is reported; of the others that is a fatal stop later.
bool isMissing(const TrackEvent& event)
{
    if (event.payload != nullptr) {
        return false;
    }
    switch (event.type) {
    case kMusicEventType_User:
        logLine("MIDISequence::Fehler: Es wurde ein NULL Pointer als Event übergeben!");
        return true;
    case kMusicEventType_Meta:
        logLine("MIDISequence::Fehler: Das Meta Event is undefiniert.");
        return true;
    case kMusicEventType_MIDIRawData:
        logLine("MIDISequence::Error: Sysex event pointer is nil.");
        return true;
    default:
        return false;
    }
}

} // namespace

SequenceReader::SequenceReader(MIDISequence& owner, NodePlace placeOfNode,
                               MIDISequence::ChannelAssignment& channelOfTrack, Patches& programs)
    : sequence(owner), place(std::move(placeOfNode)), assignment(channelOfTrack), patches(programs)
{
}

void SequenceReader::readTempoTrack(MIDISequence& owner, SequenceReadingReport& report)
{
    const MusicTrack track = report.tempoTrack();
    if (!track) {
        return;
    }
    report.tempoTrackFollows();
    owner.getTrackLength(track);
    owner.getTrackLoopInfo(track);
    owner.getTrackTimeResolution(track);
    owner.iterateEvents(track, -1);
}

void SequenceReader::readTracks(MIDISequence& owner, SequenceReadingReport& report)
{
    std::uint32_t count = 0;
    if (const OSStatus status = MusicSequenceGetTrackCount(owner.musicSequence, count); status != noErr) {
        report.countFailed(status);
    }
    owner.diagnose(concat("Diagnose: Es wurden ", count, " Spuren in der MIDI Datei gefunden."));
    for (std::uint32_t i = 0; i < count; ++i) {
        if (i >= owner.maxTracks) {
            report.tooManyTracks(count);
            break;
        }
        report.trackFollows(i);
        MusicTrack track;
        std::ignore = MusicSequenceGetIndTrack(owner.musicSequence, i, track);
        owner.getTrackLength(track);
        owner.getTrackLoopInfo(track);
        owner.getTrackOffsetTime(track);
        owner.getTrackMuteStaus(track);
        owner.getTrackSoloStatus(track);
        owner.getTrackAutomatedParameters(track);
        owner.iterateEvents(track, checkedCast<int>(i));
    }
}

NodePlace SequenceReader::placeInTree(MIDISequence& owner, int index)
{
    return [&owner, index](const EventNode&, EventTarget target) -> PatternNode* {
        SequenceNode& tree = required(owner.sequenceNode);
        switch (target) {
        case EventTarget::tempoTrack:
            return tree.getTempoTrack().get();
        case EventTarget::firstTrack:
            return &required(tree.getTrack(0));
        case EventTarget::ownTrack:
            break;
        }
        return &required(tree.getTrack(checkedCast<std::uint16_t>(index)));
    };
}

void SequenceReader::readTrack(const MusicTrack& track)
{
    const auto report =
        sequenceWalkReport(sequence, {"Fehler", "Zum Event konnten keine Informationen abgerufen werden."});
    const auto result = walkTrack(track, report, [this](const TrackEvent& event, const MusicEventIterator&) {
        sequence.ensureSongLength(event.time);
        read(event);
        return WalkStep::stepOn;
    });
    if (result == WalkResult::empty) {
        sequence.diagnose("Diagnose: Die Spur enthält keine Daten.");
    }
}

void SequenceReader::appendPayload(MIDISequence& owner, std::string_view kind, const std::uint8_t* bytes,
                                   std::uint32_t length, UserEvent& dest)
{
    const std::uint32_t count = std::min(length, maximalPayload);
    const std::vector<std::uint8_t> taken(bytes, bytes + count);
    dest.data.insert(dest.data.end(), taken.begin(), taken.end());
    std::string hex;
    for (const std::uint8_t byte : taken) {
        hex += hexadecimal(byte, ' ') + ' ';
    }
    owner.diagnose(concat(kind, ": "));
    owner.diagnose(concat(kind, " - uint8: ", taken));
    owner.diagnose(concat(kind, " - hex: ", hex));
    owner.diagnose(concat(kind, " - verbose: ", latinText(taken)));
}

void SequenceReader::read(const TrackEvent& event)
{
    if (isMissing(event)) {
        return;
    }
    diagnose(event);
    if (event.type == kMusicEventType_ExtendedNote) {
        return;
    }
    const bool isKnown =
        EventKinds::withFirst([type = event.type, code = codeOf(event)](
                                  const auto& kind) { return kind.record == type && kind.code == code; },
                              [&](const auto& kind) { take(event, kind); });
    if (!isKnown) {
        readUnknown(event);
    }
}

void SequenceReader::diagnose(const TrackEvent& event)
{
    switch (event.type) {
    case kMusicEventType_ExtendedNote:
        return sequence.diagnose(
            concat("Diagnose: Extended Note Message: ", event.record<ExtendedNoteOnEvent>().instrumentID,
                   ", Position = ", event.time));
    case kMusicEventType_Meta:
        return sequence.diagnose(
            concat("Diagnose: MIDI Meta Message: Typ = ", event.record<MIDIMetaEvent>().metaEventType,
                   ", Position = ", event.time));
    case kMusicEventType_MIDIChannelMessage: {
        const auto& message = event.record<MIDIChannelMessage>();
        return sequence.diagnose(concat("Diagnose: MIDI Channel Message: Status = ", message.status,
                                        " Data1 = ", message.data1, " Data2 = ", message.data2,
                                        " Position = ", event.time));
    }
    case kMusicEventType_Parameter:
        return sequence.diagnose(
            concat("Diagnose: MIDI Parameter Event: ID = ", event.record<ParameterEvent>().parameterID,
                   ", Position = ", event.time));
    case kMusicEventType_AUPreset:
        return sequence.diagnose(concat("Diagnose: MIDI AUPreset Event: ID = ",
                                        event.record<AUPresetEvent>().presetID, ", Position = ", event.time));
    default:
        return;
    }
}

void SequenceReader::readUnknown(const TrackEvent& event)
{
    if (event.type == kMusicEventType_Meta) {
        logLine("MIDISequence::Warnung: Unbekanntes Meta Event erhalten.");
        return take(event, EventKinds::unknownMeta);
    }
    if (event.type == kMusicEventType_MIDIChannelMessage) {
        sequence.diagnose(concat("Diagnose: Ein Unbekanntes Event vom Type ",
                                 event.record<MIDIChannelMessage>().status, ", Position = ", event.time,
                                 " erhalten."));
    } else {
        sequence.diagnose(concat("Diagnose: Unbekanntes MIDI Event vom Type ", event.type,
                                 ", Position = ", event.time, " erhalten."));
    }
    take(event, EventKinds::unknown);
}

template <class Node>
void SequenceReader::take(const TrackEvent& event, const EventKind<Node>& kind)
{
    const auto node = std::make_shared<Node>();
    node->position = event.time;
    fill(*node, event);
    if (PatternNode* const taker = place(*node, kind.target)) {
        taker->addEvent(node);
    }
    if (const auto listener = sequence.delegate.lock()) {
        (listener.get()->*kind.found)(node);
    }
}

void SequenceReader::setChannel(EventNode& event, std::uint8_t channel)
{
    event.channel = channel;
    assignment.channel = channel;
}

void SequenceReader::fill(MidiNoteEvent& note, const TrackEvent& event)
{
    const auto& message = event.record<MIDINoteMessage>();
    setChannel(note, message.channel);
    note.duration = message.duration;
    note.number = message.note;
    note.velocity = message.velocity;
    note.releaseVelocity = message.releaseVelocity;
}

void SequenceReader::fill(TempoEvent& tempo, const TrackEvent& event)
{
    tempo.value = event.record<ExtendedTempoEvent>().bpm;
}

void SequenceReader::fill(UserEvent& user, const TrackEvent& event)
{
    const auto& record = event.record<MusicEventUserData>();
    user.length = record.length;
    sequence.fillUserData(&record, user);
}

void SequenceReader::fill(SystemExclusiveEvent& exclusive, const TrackEvent& event)
{
    const auto& record = event.record<MIDIRawData>();
    exclusive.length = record.length;
    sequence.fillSysExData(&record, exclusive);
}

void SequenceReader::fill(MetaEvent& meta, const TrackEvent& event)
{
    const auto& record = event.record<MIDIMetaEvent>();
    meta.length = record.dataLength;
    sequence.fillMetaData(&record, meta);
}

template <ShortMessageNode Node>
void SequenceReader::fill(Node& message, const TrackEvent& event)
{
    const auto& record = event.record<MIDIChannelMessage>();
    const std::array values{record.data1, record.data2};
    const auto* value = values.data();
    for (std::uint8_t* byte : dataBytes(message)) {
        *byte = *value++;
    }
    if (record.status < STATUS_SYSEX) {
        setChannel(message, record.status & 0x0FU);
    }
    if constexpr (std::same_as<Node, MidiProgramChangeEvent>) {
        patches.at(message.channel) = message.value;
    }
}

} // namespace volvelle
