#include "tests/services/audiograph/sequencer/Song.h"

#include <algorithm>
#include <cstring>
#include <gtest/gtest.h>

namespace volvelle::test {

Song::Song()
{
    EXPECT_EQ(NewMusicSequence(sequence), noErr);
    EXPECT_EQ(MusicSequenceNewTrack(sequence, track), noErr);
}

Song& Song::tempo(double beat, double bpm)
{
    MusicTrack tempoTrack;
    EXPECT_EQ(MusicSequenceGetTempoTrack(sequence, tempoTrack), noErr);
    EXPECT_EQ(MusicTrackNewExtendedTempoEvent(tempoTrack, beat, bpm), noErr);
    return *this;
}

Song& Song::note(double beat, int channel, int key, int velocity, double duration, int release)
{
    const MIDINoteMessage message{static_cast<std::uint8_t>(channel), static_cast<std::uint8_t>(key),
                                  static_cast<std::uint8_t>(velocity), static_cast<std::uint8_t>(release),
                                  static_cast<float>(duration)};
    EXPECT_EQ(MusicTrackNewMIDINoteEvent(track, beat, message), noErr);
    return *this;
}

Song& Song::message(double beat, int status, int data1, int data2)
{
    const MIDIChannelMessage message{static_cast<std::uint8_t>(status), static_cast<std::uint8_t>(data1),
                                     static_cast<std::uint8_t>(data2), 0};
    EXPECT_EQ(MusicTrackNewMIDIChannelEvent(track, beat, message), noErr);
    return *this;
}

Song& Song::exclusive(double beat, const std::vector<std::uint8_t>& bytes)
{
    std::vector<std::uint64_t> room((sizeof(MIDIRawData) + bytes.size()) / 8 + 1);
    auto* record = new (room.data()) MIDIRawData();
    record->length = static_cast<std::uint32_t>(bytes.size());
    std::memcpy(reinterpret_cast<std::uint8_t*>(room.data()) + offsetof(MIDIRawData, data), bytes.data(),
                bytes.size());
    EXPECT_EQ(MusicTrackNewMIDIRawDataEvent(track, beat, record), noErr);
    return *this;
}

Song& Song::text(int type, const char* characters)
{
    const std::size_t size = std::strlen(characters);
    std::vector<std::uint64_t> room((sizeof(MIDIMetaEvent) + size) / 8 + 1);
    auto* record = new (room.data()) MIDIMetaEvent();
    record->metaEventType = static_cast<std::uint8_t>(type);
    record->dataLength = static_cast<std::uint32_t>(size);
    std::memcpy(reinterpret_cast<std::uint8_t*>(room.data()) + offsetof(MIDIMetaEvent, data), characters,
                size);
    EXPECT_EQ(MusicTrackNewMetaEvent(track, 0.0, record), noErr);
    return *this;
}

Song& Song::length(double beats)
{
    EXPECT_EQ(MusicTrackSetProperty(track, kSequenceTrackProperty_TrackLength, &beats, sizeof(beats)), noErr);
    return *this;
}

std::vector<std::uint8_t> Song::file() const
{
    std::vector<std::uint8_t> data;
    EXPECT_EQ(MusicSequenceFileCreateData(sequence, kMusicSequenceFile_MIDIType,
                                          kMusicSequenceFileFlags_EraseFile, 480, data),
              noErr);
    return data;
}

} // namespace volvelle::test
