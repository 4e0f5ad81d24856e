#include "tests/services/musicsequence/SequenceTools.h"

#include "base/Text.h"
#include "services/musicsequence/TrackWalk.h"

#include <algorithm>
#include <cctype>
#include <cstddef>
#include <cstdlib>
#include <cstring>
#include <gtest/gtest.h>

namespace volvelle::test {

namespace {

std::string run(const std::uint8_t* bytes, std::size_t count)
{
    std::string result;
    for (std::size_t i = 0; i < count; ++i) {
        result += concat(" ", hexadecimal(bytes[i]));
    }
    return result;
}

std::string noteLine(const MIDINoteMessage& note)
{
    return concat("note ", note.channel, " ", note.note, " ", note.velocity, " ", note.releaseVelocity, " ",
                  note.duration);
}

std::string line(const TrackEvent& event)
{
    switch (event.type) {
    case kMusicEventType_MIDINoteMessage:
        return noteLine(event.record<MIDINoteMessage>());
    case kMusicEventType_MIDIChannelMessage:
        return concat("message", run(static_cast<const std::uint8_t*>(event.payload), 3));
    case kMusicEventType_ExtendedTempo:
        return concat("tempo ", event.record<ExtendedTempoEvent>().bpm);
    case kMusicEventType_Meta:
        return concat("meta ", hexadecimal(event.record<MIDIMetaEvent>().metaEventType),
                      run(&event.record<MIDIMetaEvent>().data[0], event.record<MIDIMetaEvent>().dataLength));
    case kMusicEventType_MIDIRawData:
        return concat("raw", run(&event.record<MIDIRawData>().data[0], event.record<MIDIRawData>().length));
    case kMusicEventType_User:
        return concat("user", run(&event.record<MusicEventUserData>().data[0],
                                  event.record<MusicEventUserData>().length));
    case kMusicEventType_ExtendedNote:
        return concat("extended ", event.record<ExtendedNoteOnEvent>().duration);
    case kMusicEventType_Parameter:
        return concat("parameter ", event.record<ParameterEvent>().parameterID);
    default:
        return concat("preset ", event.record<AUPresetEvent>().presetID);
    }
}

template <class Record>
std::vector<std::byte> recordOf(const Record& head, const Bytes& bytes)
{
    std::vector<std::byte> record(std::max(sizeof(Record), offsetof(Record, data) + bytes.size()));
    std::memcpy(record.data(), &head, offsetof(Record, data));
    if (!bytes.empty()) {
        std::memcpy(record.data() + offsetof(Record, data), bytes.data(), bytes.size());
    }
    return record;
}

template <class Record>
const Record* view(const std::vector<std::byte>& record)
{
    return static_cast<const Record*>(static_cast<const void*>(record.data()));
}

void put(Bytes& bytes, std::size_t value, int count)
{
    while (count-- > 0) {
        bytes.push_back(static_cast<std::uint8_t>(value >> (8 * static_cast<unsigned>(count))));
    }
}

} // namespace

MusicSequence newSequence()
{
    MusicSequence sequence;
    EXPECT_EQ(NewMusicSequence(sequence), noErr);
    return sequence;
}

MusicTrack newTrack(const MusicSequence& sequence)
{
    MusicTrack track;
    EXPECT_EQ(MusicSequenceNewTrack(sequence, track), noErr);
    return track;
}

MusicTrack tempoTrackOf(const MusicSequence& sequence)
{
    MusicTrack track;
    EXPECT_EQ(MusicSequenceGetTempoTrack(sequence, track), noErr);
    return track;
}

MusicTrack trackOf(const MusicSequence& sequence, std::uint32_t index)
{
    MusicTrack track;
    EXPECT_EQ(MusicSequenceGetIndTrack(sequence, index, track), noErr);
    return track;
}

std::uint32_t trackCountOf(const MusicSequence& sequence)
{
    std::uint32_t count = 0;
    EXPECT_EQ(MusicSequenceGetTrackCount(sequence, count), noErr);
    return count;
}

MusicEventIterator iteratorOf(const MusicTrack& track)
{
    MusicEventIterator iterator;
    EXPECT_EQ(NewMusicEventIterator(track, iterator), noErr);
    return iterator;
}

void addNote(const MusicTrack& track, double time, int note, float duration, int channel, int velocity,
             int release)
{
    const MIDINoteMessage message{static_cast<std::uint8_t>(channel), static_cast<std::uint8_t>(note),
                                  static_cast<std::uint8_t>(velocity), static_cast<std::uint8_t>(release),
                                  duration};
    EXPECT_EQ(MusicTrackNewMIDINoteEvent(track, time, message), noErr);
}

void addMessage(const MusicTrack& track, double time, int status, int data1, int data2)
{
    const MIDIChannelMessage message{static_cast<std::uint8_t>(status), static_cast<std::uint8_t>(data1),
                                     static_cast<std::uint8_t>(data2), 0};
    EXPECT_EQ(MusicTrackNewMIDIChannelEvent(track, time, message), noErr);
}

void addTempo(const MusicSequence& sequence, double time, double bpm)
{
    EXPECT_EQ(MusicTrackNewExtendedTempoEvent(tempoTrackOf(sequence), time, bpm), noErr);
}

OSStatus tryMeta(const MusicTrack& track, double time, std::uint8_t type, const Bytes& bytes)
{
    const MIDIMetaEvent head{type, 0, 0, 0, static_cast<std::uint32_t>(bytes.size()), {}};
    const auto record = recordOf(head, bytes);
    return MusicTrackNewMetaEvent(track, time, view<MIDIMetaEvent>(record));
}

OSStatus tryRawData(const MusicTrack& track, double time, const Bytes& bytes)
{
    const auto record = recordOf(MIDIRawData{static_cast<std::uint32_t>(bytes.size()), {}}, bytes);
    return MusicTrackNewMIDIRawDataEvent(track, time, view<MIDIRawData>(record));
}

OSStatus tryUserData(const MusicTrack& track, double time, const Bytes& bytes)
{
    const auto record = recordOf(MusicEventUserData{static_cast<std::uint32_t>(bytes.size()), {}}, bytes);
    return MusicTrackNewUserEvent(track, time, view<MusicEventUserData>(record));
}

void addMeta(const MusicTrack& track, double time, std::uint8_t type, const Bytes& bytes)
{
    EXPECT_EQ(tryMeta(track, time, type, bytes), noErr);
}

void addRawData(const MusicTrack& track, double time, const Bytes& bytes)
{
    EXPECT_EQ(tryRawData(track, time, bytes), noErr);
}

double lengthOf(const MusicTrack& track)
{
    double length = -1.0;
    std::uint32_t size = sizeof(length);
    EXPECT_EQ(MusicTrackGetProperty(track, kSequenceTrackProperty_TrackLength, &length, size), noErr);
    return length;
}

void setLength(const MusicTrack& track, double length)
{
    EXPECT_EQ(MusicTrackSetProperty(track, kSequenceTrackProperty_TrackLength, &length, sizeof(length)),
              noErr);
}

Lines eventsOf(const MusicTrack& track)
{
    Lines lines;
    EXPECT_EQ(forEachEvent(track,
                           [&lines](const TrackEvent& event) {
                               lines.push_back(concat(event.time, " ", line(event)));
                           }),
              noErr);
    return lines;
}

std::string hexOf(const Bytes& bytes)
{
    return run(bytes.data(), bytes.size());
}

Bytes chunkOf(const Bytes& body)
{
    Bytes bytes = hex("\"MTrk\"");
    put(bytes, body.size(), 4);
    return joined({bytes, body});
}

Bytes joined(std::initializer_list<Bytes> parts)
{
    Bytes bytes;
    for (const Bytes& part : parts) {
        bytes.insert(bytes.end(), part.begin(), part.end());
    }
    return bytes;
}

Bytes fileOf(int format, int division, std::initializer_list<Bytes> tracks)
{
    Bytes bytes = hex("\"MThd\" 00000006");
    put(bytes, static_cast<std::size_t>(format), 2);
    put(bytes, tracks.size(), 2);
    put(bytes, static_cast<std::size_t>(division), 2);
    for (const Bytes& track : tracks) {
        bytes = joined({bytes, chunkOf(track)});
    }
    return bytes;
}

MusicSequence load(const Bytes& bytes, MusicSequenceLoadFlags flags)
{
    const MusicSequence sequence = newSequence();
    EXPECT_EQ(MusicSequenceFileLoadData(sequence, bytes, kMusicSequenceFile_MIDIType, flags), noErr);
    return sequence;
}

OSStatus tryLoad(const Bytes& bytes, MusicSequenceLoadFlags flags)
{
    return MusicSequenceFileLoadData(newSequence(), bytes, kMusicSequenceFile_MIDIType, flags);
}

Lines warningsOf(const MusicSequence& sequence)
{
    Lines warnings;
    EXPECT_EQ(MusicSequenceGetLoadWarnings(sequence, warnings), noErr);
    return warnings;
}

Bytes save(const MusicSequence& sequence, std::int16_t resolution)
{
    Bytes bytes;
    EXPECT_EQ(MusicSequenceFileCreateData(sequence, kMusicSequenceFile_MIDIType, 1, resolution, bytes),
              noErr);
    return bytes;
}

} // namespace volvelle::test
