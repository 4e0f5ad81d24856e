#include "scores/ScoreWriter.h"

#include "base/Text.h"
#include "services/musicsequence/MusicSequence.h"
#include "services/musicsequence/smf/SMFWriter.h"

#include <algorithm>
#include <array>
#include <cstddef>
#include <cstring>

namespace volvelle {

namespace {

constexpr std::uint8_t textMeta = 0x01;
constexpr std::uint8_t trackNameMeta = 0x03;
constexpr std::int16_t ticksInBeat = 480;

OSStatus addText(const MusicTrack& track, double position, std::uint8_t type, std::string_view words)
{
    std::vector<std::uint32_t> room((sizeof(MIDIMetaEvent) + words.size()) / sizeof(std::uint32_t) + 1);
    auto* record = reinterpret_cast<std::uint8_t*>(room.data());
    MIDIMetaEvent head;
    head.metaEventType = type;
    head.dataLength = static_cast<std::uint32_t>(words.size());
    std::memcpy(record, &head, sizeof(head));
    std::memcpy(record + offsetof(MIDIMetaEvent, data), words.data(), words.size());
    return MusicTrackNewMetaEvent(track, position, reinterpret_cast<const MIDIMetaEvent*>(record));
}

OSStatus addNote(const MusicTrack& track, const ScoreNote& note, int channel)
{
    MIDINoteMessage message;
    message.channel = static_cast<std::uint8_t>(channel);
    message.note = note.number;
    message.velocity = note.velocity;
    message.duration = static_cast<float>(note.duration);
    return MusicTrackNewMIDINoteEvent(track, note.position, message);
}

OSStatus fill(const MusicTrack& track, const Score& score)
{
    OSStatus status = addText(track, 0, trackNameMeta, score.title);
    if (status == noErr) {
        status = addText(track, 0, textMeta, std::string(Score::styleMark) + score.style);
    }
    if (status == noErr && score.machine) {
        status = addText(track, 0, textMeta, Score::machineMark);
    }
    if (status == noErr && score.colour) {
        status = addText(track, 0, textMeta, Score::colourMark);
    }
    for (std::size_t i = 0; status == noErr && i < score.chords.size(); ++i) {
        status = addText(track, score.chords[i].position, textMeta, "chord: " + score.chords[i].name);
    }
    for (std::size_t i = 0; status == noErr && i < score.notes.size(); ++i) {
        status = addNote(track, score.notes[i], scoreChannel(score.kind));
    }
    const double length = Score::beats;
    if (status == noErr) {
        status = MusicTrackSetProperty(track, kSequenceTrackProperty_TrackLength, &length, sizeof(length));
    }
    return status;
}

} // namespace

Result<std::vector<std::uint8_t>> scoreToMIDI(const Score& score)
{
    MusicSequence sequence;
    MusicTrack track;
    std::vector<std::uint8_t> data;
    OSStatus status = NewMusicSequence(sequence);
    if (status == noErr) {
        status = MusicSequenceNewTrack(sequence, track);
    }
    if (status == noErr) {
        status = fill(track, score);
    }
    if (status == noErr) {
        status = writeSMF(sequence, SMFFormat::SingleTrack, ticksInBeat, data);
    }
    if (status == noErr) {
        return data;
    }
    return failure(concat("the phrase cannot be written as MIDI: status ", status));
}

bool isCompiledPhrase(std::span<const std::uint8_t> bytes)
{
    constexpr std::array<std::uint8_t, 18> head = {'M', 'T', 'h', 'd',  0,    0,   0,   6,   0,
                                                   0,   0,   1,   0x01, 0xE0, 'M', 'T', 'r', 'k'};
    constexpr std::size_t trackLength = 4;
    constexpr std::array<std::uint8_t, 3> name = {0, 0xFF, trackNameMeta};
    const auto from = std::min(head.size() + trackLength, bytes.size());
    const auto track = bytes.subspan(from);
    return std::ranges::equal(bytes.first(std::min(head.size(), bytes.size())), head) &&
           std::ranges::equal(track.first(std::min(name.size(), track.size())), name) &&
           !std::ranges::search(track, Score::styleMark).empty();
}

} // namespace volvelle
