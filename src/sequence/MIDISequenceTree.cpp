#include "base/Checked.h"
#include "midi/MIDIConstants.h"
#include "sequence/MIDISequence.h"
#include "sequence/SequenceLog.h"

#include <array>

namespace volvelle {

namespace {

constexpr std::string_view undefinedTarget = "MIDISequence::Fehler: Die Ziel Sequenz ist undefiniert.";
constexpr std::string_view undefinedTargetTrack = "MIDISequence::Fehler: Die Ziel Spur ist undefiniert.";
constexpr std::string_view undefinedSourceTrack = "MIDISequence::Fehler: Die Quell Spur ist undefiniert.";
constexpr std::string_view undefinedPattern = "MIDISequence::Fehler: Das Quell Pattern ist undefiniert.";
constexpr std::string_view unassigned =
    "MIDISequence::Warnung: Ein Element konnte der Sequenz nicht zugeordnet werden.";

// Writes an event through the message operation of its class; false where it is of another class.
using Writer = bool (*)(MIDISequence&, const std::shared_ptr<EventNode>&);

template <class Node, void (MIDISequence::*message)(const std::shared_ptr<Node>&)>
bool writeAs(MIDISequence& sequence, const std::shared_ptr<EventNode>& event)
{
    const auto node = std::dynamic_pointer_cast<Node>(event);
    if (node) {
        (sequence.*message)(node);
    }
    return node != nullptr;
}

struct Arm {
    std::uint8_t code;
    Writer write;
};

using S = MIDISequence;

constexpr std::array<Arm, 18> metaArms{{
    {META_SEQUENCENUMBER, writeAs<MetaSequenceNumberEvent, &S::createMetaSequenceNumberMessage>},
    {META_TEXT, writeAs<MetaTextEvent, &S::createMetaTextMessage>},
    {META_COPYRIGHT, writeAs<MetaCopyrightEvent, &S::createMetaCopyrightMessage>},
    {META_TRACKNAME, writeAs<MetaTrackNameEvent, &S::createMetaTrackNameMessage>},
    {META_INSTRUMENTNAME, writeAs<MetaInstrumentNameEvent, &S::createMetaInstrumentNameMessage>},
    {META_LYRICS, writeAs<MetaLyricsEvent, &S::createMetaLyricsMessage>},
    {META_MARKER, writeAs<MetaMarkerEvent, &S::createMetaMarkerMessage>},
    {META_CUEPOINT, writeAs<MetaCuePointEvent, &S::createMetaCuePointMessage>},
    {META_PROGRAMNAME, writeAs<MetaProgramNameEvent, &S::createMetaProgramNameMessage>},
    {META_DEVICENAME, writeAs<MetaDeviceNameEvent, &S::createMetaDeviceNameMessage>},
    {META_CHANNELPREFIX, writeAs<MetaChannelPrefixEvent, &S::createMetaChannelPrefixMessage>},
    {META_MIDIPORT, writeAs<MetaMidiPortEvent, &S::createMetaMidiPortMessage>},
    {META_EOT, writeAs<MetaEndOfTrackEvent, &S::createMetaEndOfTrackMessage>},
    {META_SETTEMPO, writeAs<MetaSetTempoEvent, &S::createMetaSetTempoMessage>},
    {META_SMTPOFFSET, writeAs<MetaSMTPOffsetEvent, &S::createMetaSMTPOffsetMessage>},
    {META_TIMESIGNATURE, writeAs<MetaTimeSignatureEvent, &S::createMetaTimeSignatureMessage>},
    {META_KEYSIGNATURE, writeAs<MetaKeySignatureEvent, &S::createMetaKeySignatureMessage>},
    {META_SPECIFIC, writeAs<MetaSequencerSpecificEvent, &S::createMetaSequencerSpecificMessage>},
}};

constexpr std::array<Arm, 17> statusArms{{
    {STATUS_NOTEON, writeAs<MidiNoteEvent, &S::createNoteMessage>},
    {STATUS_PPRESSURE, writeAs<MidiPolyPressureEvent, &S::createPolyphonicPressureMessage>},
    {STATUS_CONTROLLER, writeAs<MidiControllerEvent, &S::createControllerMessage>},
    {STATUS_PROGRAM, writeAs<MidiProgramChangeEvent, &S::createProgramChangeMessage>},
    {STATUS_CPRESSURE, writeAs<MidiChannelPressureEvent, &S::createAfterTouchMessage>},
    {STATUS_PITCHBEND, writeAs<MidiPitchBendEvent, &S::createPitchWheelMessage>},
    {STATUS_SYSEX, writeAs<SystemExclusiveEvent, &S::createSysExMessage>},
    {STATUS_TIMECODE, writeAs<SystemTimeCodeEvent, &S::createSystemTimeCodeMessage>},
    {STATUS_SONGPOSITION,
     writeAs<SystemSongPositionPointerEvent, &S::createSystemSongPositionPointerMessage>},
    {STATUS_SONGSELECT, writeAs<SystemSongSelectEvent, &S::createSystemSongSelectMessage>},
    {STATUS_TUNEREQUEST, writeAs<SystemTuneRequestEvent, &S::createSystemTuneRequestMessage>},
    {STATUS_TIMINGCLOCK, writeAs<SystemClockEvent, &S::createSystemTimingClockMessage>},
    {STATUS_START, writeAs<SystemStartEvent, &S::createSystemStartMessage>},
    {STATUS_CONTINUE, writeAs<SystemContinueEvent, &S::createSystemContinueMessage>},
    {STATUS_STOP, writeAs<SystemStopEvent, &S::createSystemStopMessage>},
    {STATUS_ACTIVESENSING, writeAs<SystemActiveSensingEvent, &S::createSystemActiveSensingMessage>},
    {STATUS_RESET, writeAs<SystemResetEvent, &S::createSystemResetMessage>},
}};

template <std::size_t size>
Writer writerFor(const std::array<Arm, size>& arms, std::uint8_t code)
{
    for (const Arm& arm : arms) {
        if (arm.code == code) {
            return arm.write;
        }
    }
    return nullptr;
}

void writeMeta(MIDISequence& sequence, const std::shared_ptr<EventNode>& event, std::uint8_t type)
{
    const Writer write = writerFor(metaArms, type);
    if (write != nullptr && write(sequence, event)) {
        return;
    }
    if (type == META_SEQUENCENUMBER) {
        logLine("MIDISequence::Warnung: Ein üngültiges META Element (0x00) wurde gefunden.");
    } else {
        logLine(unassigned);
    }
}

void writeByStatus(MIDISequence& sequence, const std::shared_ptr<EventNode>& event)
{
    const std::uint8_t status = event->statusMask;
    if (status == STATUS_NOTEOFF) {
        logLine("MIDISequence::Info: Note Off nicht unterstützt.");
        return;
    }
    const Writer write = writerFor(statusArms, status);
    if (write != nullptr && !write(sequence, event)) {
        logLine(unassigned);
    } else if (status == STATUS_NOTEON) {
        logLine("MIDISequence::Info: Eine Note wurde hinzugefügt.");
    } else if (status == STATUS_PPRESSURE) {
        logLine("MIDISequence::Info: Es wurde ein Polyphonic Aftertouch Event hinzugefügt.");
    } else {
        logLine("MIDISequence::Info: .");
    }
}

bool isPresent(bool present, std::string_view message)
{
    if (!present) {
        logLine(message);
    }
    return present;
}

void writeTempoEvent(const MusicTrack& track, const std::shared_ptr<EventNode>& event)
{
    const auto* tempo = dynamic_cast<const TempoEvent*>(&required(event));
    if (tempo == nullptr) {
        logLine(unassigned);
    } else if (MusicTrackNewExtendedTempoEvent(track, tempo->position, tempo->value) != noErr) {
        logLine("MIDISequence::Fehler: Das Tempo Event konnte nicht eingefügt werden.");
    }
}

void writeTempoTrack(MIDISequence& sequence)
{
    MusicTrack track;
    if (MusicSequenceGetTempoTrack(sequence.musicSequence, track) != noErr) {
        logLine("MIDISequence::Fehler: Die Tempo Spur konnte nicht abgerufen werden.");
    }
    if (!isPresent(track != nullptr, "MIDISequence::Fehler: Die Tempo Spur ist undefiniert.")) {
        return;
    }
    sequence.removeTempoEvents(track);
    for (const auto& event : required(sequence.sequenceNode->getTempoTrack()).events) {
        writeTempoEvent(track, event);
    }
}

void writeEvents(MIDISequence& sequence, const PatternNode& node, const MusicTrack& track)
{
    for (const auto& event : node.events) {
        required(event);
        sequence.eventsToMusicTrack(event, track);
    }
}

} // namespace

void MIDISequence::eventsToMusicTrack(const std::shared_ptr<EventNode>& event, const MusicTrack& track,
                                      double offset)
{
    if (!isPresent(musicSequence != nullptr, undefinedTarget) ||
        !isPresent(track != nullptr, undefinedTargetTrack) ||
        !isPresent(event != nullptr, "MIDISequence::Fehler: Das Event ist undefiniert.")) {
        return;
    }
    event->position += offset;
    const auto* meta = event->statusMask == 0 ? dynamic_cast<const MetaEvent*>(event.get()) : nullptr;
    if (meta != nullptr) {
        writeMeta(*this, event, meta->type);
    } else {
        writeByStatus(*this, event);
    }
}

void MIDISequence::sequenceNodeToMusicSequence()
{
    if (!isPresent(musicSequence != nullptr, undefinedTarget) ||
        !isPresent(sequenceNode != nullptr, "MIDISequence::Fehler: Die Quell Sequenz ist undefiniert.")) {
        return;
    }
    clear();
    writeTempoTrack(*this);
    for (const auto& node : sequenceNode->tracks) {
        const std::uint8_t channel = required(node).channel;
        MusicTrack track;
        if (MusicSequenceGetIndTrack(musicSequence, channel, track) != noErr) {
            logLine("MIDISequence::Fehler: Eine Spur ", channel, " konnte nicht abgerufen werden.");
        }
        if (isPresent(track != nullptr,
                      "MIDISequence::Fehler: Die Zielspur für das Update konnte nicht ermittelt werden.")) {
            trackNodeToMusicTrack(node, track);
        }
    }
}

void MIDISequence::trackNodeToMusicTrack(const std::shared_ptr<TrackNode>& trackNode,
                                         const MusicTrack& musicTrack)
{
    if (!isPresent(musicSequence != nullptr, undefinedTarget) ||
        !isPresent(musicTrack != nullptr, undefinedTargetTrack) ||
        !isPresent(trackNode != nullptr, undefinedSourceTrack)) {
        return;
    }
    clear(musicTrack);
    writeEvents(*this, *trackNode, musicTrack);
    for (const auto& pattern : trackNode->patterns) {
        writeEvents(*this, required(pattern), musicTrack);
    }
}

void MIDISequence::trackNodeToMusicSequence(const std::shared_ptr<TrackNode>& trackNode)
{
    if (!isPresent(musicSequence != nullptr, undefinedTarget) ||
        !isPresent(trackNode != nullptr, undefinedSourceTrack)) {
        return;
    }
    clear();
    trackNodeToMusicTrack(trackNode, getTrack(trackNode->channel));
}

void MIDISequence::patternNodeToMusicTrack(const std::shared_ptr<PatternNode>& patternNode,
                                           const MusicTrack& musicTrack)
{
    if (!isPresent(musicSequence != nullptr, undefinedTarget) ||
        !isPresent(patternNode != nullptr, undefinedPattern) ||
        !isPresent(musicTrack != nullptr, undefinedTargetTrack)) {
        return;
    }
    clear(musicTrack);
    writeEvents(*this, *patternNode, musicTrack);
}

void MIDISequence::patternNodeToMusicSequence(const std::shared_ptr<PatternNode>& patternNode)
{
    if (!isPresent(musicSequence != nullptr, undefinedTarget) ||
        !isPresent(patternNode != nullptr, undefinedPattern)) {
        return;
    }
    clear();
    for (const auto& event : patternNode->events) {
        eventsToMusicTrack(event, getTrack(required(event).channel));
    }
}

} // namespace volvelle
