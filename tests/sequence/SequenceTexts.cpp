#include "tests/sequence/SequenceTexts.h"

#include "base/Text.h"
#include "services/musicsequence/TrackWalk.h"

#include <tuple>

namespace volvelle::test {

namespace {

std::string bytesText(const std::uint8_t* bytes, std::uint32_t count)
{
    return text(std::vector<std::uint8_t>(bytes, bytes + count));
}

std::string recordText(const TrackEvent& event)
{
    switch (event.type) {
    case kMusicEventType_ExtendedTempo:
        return concat("tempo ", event.record<ExtendedTempoEvent>().bpm);
    case kMusicEventType_Meta: {
        const auto& meta = event.record<MIDIMetaEvent>();
        return concat("meta ", meta.metaEventType, " ", bytesText(meta.data, meta.dataLength));
    }
    case kMusicEventType_MIDINoteMessage: {
        const auto& note = event.record<MIDINoteMessage>();
        return concat("note ", note.channel, " ", note.note, " ", note.velocity, " ", note.releaseVelocity,
                      " ", note.duration);
    }
    case kMusicEventType_MIDIChannelMessage: {
        const auto& message = event.record<MIDIChannelMessage>();
        return concat("message ", message.status, " ", message.data1, " ", message.data2);
    }
    case kMusicEventType_MIDIRawData: {
        const auto& raw = event.record<MIDIRawData>();
        return concat("raw ", bytesText(raw.data, raw.length));
    }
    default:
        return concat("type ", event.type);
    }
}

template <class... Values>
std::string spaced(const Values&... values)
{
    return (concat(" ", values) + ...);
}

std::string fieldsOf(const EventNode& node)
{
    if (const auto* note = dynamic_cast<const MidiNoteEvent*>(&node)) {
        return spaced(note->number, note->velocity, note->releaseVelocity, note->duration);
    }
    if (const auto* poly = dynamic_cast<const MidiPolyPressureEvent*>(&node)) {
        return spaced(poly->number, poly->value);
    }
    if (const auto* controller = dynamic_cast<const MidiControllerEvent*>(&node)) {
        return spaced(controller->number, controller->value);
    }
    if (const auto* program = dynamic_cast<const MidiProgramChangeEvent*>(&node)) {
        return spaced(program->value);
    }
    if (const auto* pressure = dynamic_cast<const MidiChannelPressureEvent*>(&node)) {
        return spaced(pressure->value);
    }
    if (const auto* pitch = dynamic_cast<const MidiPitchBendEvent*>(&node)) {
        return spaced(pitch->bend.msb, pitch->bend.lsb);
    }
    if (const auto* code = dynamic_cast<const SystemTimeCodeEvent*>(&node)) {
        return spaced(code->value);
    }
    if (const auto* pointer = dynamic_cast<const SystemSongPositionPointerEvent*>(&node)) {
        return spaced(pointer->msb, pointer->lsb);
    }
    if (const auto* song = dynamic_cast<const SystemSongSelectEvent*>(&node)) {
        return spaced(song->value);
    }
    if (const auto* tempo = dynamic_cast<const TempoEvent*>(&node)) {
        return spaced(tempo->value);
    }
    if (const auto* meta = dynamic_cast<const MetaEvent*>(&node)) {
        return spaced(meta->type, meta->length, meta->data);
    }
    if (const auto* user = dynamic_cast<const UserEvent*>(&node)) {
        return spaced(user->length, user->data);
    }
    return {};
}

} // namespace

Lines join(std::initializer_list<Lines> parts)
{
    Lines result;
    for (const Lines& part : parts) {
        result.insert(result.end(), part.begin(), part.end());
    }
    return result;
}

Lines reported(std::string line, OSStatus status, std::string_view text)
{
    return {std::move(line), concat("Fehler: ", status),
            concat("The operation could not be completed (status ", status, ")."), std::string(text)};
}

Lines endOfTrack()
{
    return reported("MIDISequence::Warnung: -10857. \nDas Folge Event konnte nicht abgerufen werden "
                    "(Ende der Spur?).",
                    -10857, "Ende der Spur.");
}

Lines contents(const MusicTrack& track)
{
    Lines result;
    std::ignore = forEachEvent(track, [&result](const TrackEvent& event) {
        result.push_back(concat(event.time, " ", recordText(event)));
    });
    return result;
}

Lines tempoContents(const MusicSequence& sequence)
{
    MusicTrack track;
    MusicSequenceGetTempoTrack(sequence, track);
    return contents(track);
}

std::string describe(const EventNode& node)
{
    return concat(node.className(), " ", node.position, " ", node.channel, ":", fieldsOf(node));
}

Lines describe(const PatternNode& node)
{
    Lines result;
    for (const auto& event : node.events) {
        result.push_back(describe(*event));
    }
    return result;
}

} // namespace volvelle::test
