#include "sequence/SequenceWriter.h"

#include "midi/MIDIRawDataExtension.h"
#include "sequence/SequenceLog.h"

namespace volvelle {

namespace {

constexpr std::string_view unassigned =
    "MIDISequence::Warnung: Ein Element konnte der Sequenz nicht zugeordnet werden.";

void writeTempo(const MusicTrack& track, const std::shared_ptr<EventNode>& event)
{
    const auto* tempo = dynamic_cast<const TempoEvent*>(&required(event));
    if (tempo == nullptr) {
        logLine(unassigned);
    } else if (MusicTrackNewExtendedTempoEvent(track, tempo->position, tempo->value) != noErr) {
        logLine("MIDISequence::Fehler: Das Tempo Event konnte nicht eingefügt werden.");
    }
}

} // namespace

void SequenceWriter::writeByCode(const std::shared_ptr<EventNode>& event)
{
    const auto* meta = event->statusMask == 0 ? dynamic_cast<const MetaEvent*>(event.get()) : nullptr;
    if (meta != nullptr) {
        writeMeta(event, meta->type);
    } else {
        writeStatus(event);
    }
}

void SequenceWriter::writeAll(const PatternNode& node, const MusicTrack& track)
{
    for (const auto& event : node.events) {
        required(event);
        sequence.eventsToMusicTrack(event, track);
    }
}

void SequenceWriter::writeTempoTrack()
{
    MusicTrack track;
    if (MusicSequenceGetTempoTrack(sequence.musicSequence, track) != noErr) {
        logLine("MIDISequence::Fehler: Die Tempo Spur konnte nicht abgerufen werden.");
    }
    if (!track) {
        logLine("MIDISequence::Fehler: Die Tempo Spur ist undefiniert.");
        return;
    }
    sequence.removeTempoEvents(track);
    for (const auto& event : required(sequence.sequenceNode->getTempoTrack()).events) {
        writeTempo(track, event);
    }
}

bool SequenceWriter::isWritten(const SystemExclusiveEvent& event)
{
    if (event.data.empty()) {
        logLine("MIDISequence::Warnung: Es befinden sich keine Einträge im übergebenen Daten Objekt.");
    }
    return !event.data.empty();
}

OSStatus SequenceWriter::put(const MusicTrack& track, const MidiNoteEvent& event)
{
    return MusicTrackNewMIDINoteEvent(
        track, event.position,
        {event.channel, event.number, event.velocity, event.releaseVelocity, event.duration});
}

OSStatus SequenceWriter::put(const MusicTrack& track, const SystemExclusiveEvent& event)
{
    const MyMIDIRawData record(event.data);
    return MusicTrackNewMIDIRawDataEvent(track, event.position, record.ptr);
}

OSStatus SequenceWriter::put(const MusicTrack& track, const MetaEvent& event)
{
    const MyMIDIMetaEvent record(event.data);
    record.ptr->metaEventType = event.type;
    return MusicTrackNewMetaEvent(track, event.position, record.ptr);
}

SequenceWriter::Outcome SequenceWriter::writeAs(const std::shared_ptr<EventNode>& event, bool isMeta,
                                                std::uint8_t code)
{
    auto outcome = Outcome::noKind;
    EventKinds::withFirst(
        [&](const auto& kind) {
            return kind.message != nullptr && kind.isMeta == isMeta && kind.code == code;
        },
        [&]<class Node>(const EventKind<Node>& kind) {
            const auto node = std::dynamic_pointer_cast<Node>(event);
            if (node) {
                (sequence.*kind.message)(node);
            }
            outcome = node ? Outcome::written : Outcome::otherClass;
        });
    return outcome;
}

void SequenceWriter::writeMeta(const std::shared_ptr<EventNode>& event, std::uint8_t type)
{
    if (writeAs(event, true, type) == Outcome::written) {
        return;
    }
    if (type == META_SEQUENCENUMBER) {
        logLine("MIDISequence::Warnung: Ein üngültiges META Element (0x00) wurde gefunden.");
    } else {
        logLine(unassigned);
    }
}

void SequenceWriter::writeStatus(const std::shared_ptr<EventNode>& event)
{
    const std::uint8_t status = event->statusMask;
    if (status == STATUS_NOTEOFF) {
        logLine("MIDISequence::Info: Note Off nicht unterstützt.");
    } else if (writeAs(event, false, status) == Outcome::otherClass) {
        logLine(unassigned);
    } else if (status == STATUS_NOTEON) {
        logLine("MIDISequence::Info: Eine Note wurde hinzugefügt.");
    } else if (status == STATUS_PPRESSURE) {
        logLine("MIDISequence::Info: Es wurde ein Polyphonic Aftertouch Event hinzugefügt.");
    } else {
        logLine("MIDISequence::Info: .");
    }
}

MusicTrack SequenceWriter::trackOf(const EventNode& event)
{
    MusicTrack track = sequence.getTrack(event.channel);
    if (!track) {
        logLine("MIDISequence::Fehler: Die Spur ist undefiniert.");
    }
    return track;
}

void SequenceWriter::reportFailure(OSStatus status, const EventNode& event, std::string_view failure,
                                   bool hasChannel)
{
    const std::string channel = hasChannel ? concat(" ", event.channel) : "";
    logLine("MIDISequence::Fehler: ", status, ". \nEs konnte ", failure, channel, " erzeugt werden.");
    sequence.checkStatus(status);
}

} // namespace volvelle
