#include "tests/services/musicsequence/SequenceTools.h"

#include <algorithm>
#include <cstring>
#include <gtest/gtest.h>
#include <limits>

namespace volvelle::test {

namespace {

class MusicTrackEvents : public testing::Test {
protected:
    static constexpr double infinite = std::numeric_limits<double>::infinity();
    static constexpr double noNumber = std::numeric_limits<double>::quiet_NaN();

    MusicSequence sequence = newSequence();
    MusicTrack track = newTrack(sequence);
};

TEST_F(MusicTrackEvents, EveryKindOfEventIsKeptAsItWasGiven)
{
    addNote(track, 0.0, 60, 1.5F, 9, 100, 64);
    addMessage(track, 1.0, 0xB0, 7, 100);
    addMessage(track, 2.0, 0xF2, 1, 2);
    addRawData(track, 3.0, hex("F0 7E 7F 09 01 F7"));
    addMeta(track, 4.0, 0x03, hex("\"Bass line\""));
    addTempo(sequence, 5.0, 133.3);
    EXPECT_EQ(tryUserData(track, 6.0, hex("01 02")), noErr);
    EXPECT_EQ(MusicTrackNewExtendedNoteEvent(track, 7.0, {1, 2, 2.5F, {3.0F, 4.0F}}), noErr);
    EXPECT_EQ(MusicTrackNewParameterEvent(track, 8.0, {7, 0, 0, 0.5F}), noErr);
    EXPECT_EQ(MusicTrackNewAUPresetEvent(track, 9.0, {12}), noErr);
    EXPECT_EQ(eventsOf(track),
              (Lines{"0.0 note 9 60 100 64 1.5", "1.0 message B0 07 64", "2.0 message F2 01 02",
                     "3.0 raw F0 7E 7F 09 01 F7", "4.0 meta 03 42 61 73 73 20 6C 69 6E 65", "6.0 user 01 02",
                     "7.0 extended 2.5", "8.0 parameter 7", "9.0 preset 12"}));
    EXPECT_EQ(eventsOf(tempoTrackOf(sequence)), Lines{"5.0 tempo 133.3"});
}

TEST_F(MusicTrackEvents, EventsStandByTimeAndEqualTimesInTheOrderOfEntry)
{
    addNote(track, 2.0, 1);
    addNote(track, 1.0, 2);
    addNote(track, 2.0, 3);
    addNote(track, 1.0, 4);
    addNote(track, 0.0, 5);
    EXPECT_EQ(eventsOf(track),
              (Lines{"0.0 note 0 5 100 0 1.0", "1.0 note 0 2 100 0 1.0", "1.0 note 0 4 100 0 1.0",
                     "2.0 note 0 1 100 0 1.0", "2.0 note 0 3 100 0 1.0"}));
    addNote(track, 1.0, 6);
    EXPECT_EQ(eventsOf(track).at(3), "1.0 note 0 6 100 0 1.0");
}

TEST_F(MusicTrackEvents, ATimeThatIsNegativeOrNotFiniteIsRefused)
{
    for (const double time : {-0.001, -infinite, infinite, noNumber}) {
        EXPECT_EQ(MusicTrackNewMIDINoteEvent(track, time, {}), kAudioToolboxErr_InvalidEventType);
        EXPECT_EQ(MusicTrackNewMIDIChannelEvent(track, time, {0xB0, 0, 0, 0}),
                  kAudioToolboxErr_InvalidEventType);
        EXPECT_EQ(tryRawData(track, time, hex("F0 F7")), kAudioToolboxErr_InvalidEventType);
        EXPECT_EQ(tryMeta(track, time, 1, {}), kAudioToolboxErr_InvalidEventType);
        EXPECT_EQ(tryUserData(track, time, {}), kAudioToolboxErr_InvalidEventType);
        EXPECT_EQ(MusicTrackNewExtendedTempoEvent(tempoTrackOf(sequence), time, 120.0),
                  kAudioToolboxErr_InvalidEventType);
        EXPECT_EQ(MusicTrackNewExtendedNoteEvent(track, time, {}), kAudioToolboxErr_InvalidEventType);
        EXPECT_EQ(MusicTrackNewParameterEvent(track, time, {}), kAudioToolboxErr_InvalidEventType);
        EXPECT_EQ(MusicTrackNewAUPresetEvent(track, time, {}), kAudioToolboxErr_InvalidEventType);
    }
    EXPECT_EQ(eventsOf(track), Lines{});
    EXPECT_EQ(lengthOf(track), 0.0);
}

TEST_F(MusicTrackEvents, ANoteOutsideItsRangesIsRefused)
{
    const std::vector<MIDINoteMessage> wrong{{16, 60, 64, 0, 1.0F},
                                             {0, 128, 64, 0, 1.0F},
                                             {0, 60, 128, 0, 1.0F},
                                             {0, 60, 64, 128, 1.0F},
                                             {0, 60, 64, 0, -1.0F},
                                             {0, 60, 64, 0, std::numeric_limits<float>::infinity()},
                                             {0, 60, 64, 0, std::numeric_limits<float>::quiet_NaN()}};
    for (const MIDINoteMessage& note : wrong) {
        EXPECT_EQ(MusicTrackNewMIDINoteEvent(track, 0.0, note), kAudioToolboxErr_InvalidEventType);
    }
    EXPECT_EQ(MusicTrackNewMIDINoteEvent(track, 0.0, {15, 127, 127, 127, 0.0F}), noErr);
    EXPECT_EQ(MusicTrackNewExtendedNoteEvent(track, 0.0, {0, 0, -1.0F, {}}),
              kAudioToolboxErr_InvalidEventType);
}

TEST_F(MusicTrackEvents, AMessageOutsideItsRangesIsRefused)
{
    const std::vector<MIDIChannelMessage> wrong{
        {0x7F, 0, 0, 0}, {0xF0, 0, 0, 0}, {0xB0, 0x80, 0, 0}, {0xB0, 0, 0x80, 0}};
    for (const MIDIChannelMessage& message : wrong) {
        EXPECT_EQ(MusicTrackNewMIDIChannelEvent(track, 0.0, message), kAudioToolboxErr_InvalidEventType);
    }
    for (const std::uint8_t status : hex("80 EF F1 FF")) {
        EXPECT_EQ(MusicTrackNewMIDIChannelEvent(track, 0.0, {status, 127, 127, 0}), noErr);
    }
}

TEST_F(MusicTrackEvents, AMissingRecordIsRefused)
{
    EXPECT_EQ(MusicTrackNewMIDIRawDataEvent(track, 0.0, nullptr), kAudioToolboxErr_InvalidEventType);
    EXPECT_EQ(MusicTrackNewMetaEvent(track, 0.0, nullptr), kAudioToolboxErr_InvalidEventType);
    EXPECT_EQ(MusicTrackNewUserEvent(track, 0.0, nullptr), kAudioToolboxErr_InvalidEventType);
}

TEST_F(MusicTrackEvents, ATempoGoesToTheTempoTrackOnly)
{
    EXPECT_EQ(MusicTrackNewExtendedTempoEvent(track, 0.0, 120.0), kAudioToolboxErr_IllegalTrackDestination);
    for (const double bpm : {0.0, -1.0, infinite, noNumber}) {
        EXPECT_EQ(MusicTrackNewExtendedTempoEvent(tempoTrackOf(sequence), 0.0, bpm),
                  kAudioToolboxErr_InvalidEventType);
    }
    EXPECT_EQ(eventsOf(tempoTrackOf(sequence)), Lines{});
}

TEST_F(MusicTrackEvents, TheTempoTrackTakesEveryOtherKindToo)
{
    addNote(tempoTrackOf(sequence), 0.0, 60);
    addMeta(tempoTrackOf(sequence), 0.0, 0x58, hex("04 02 18 08"));
    EXPECT_EQ(eventsOf(tempoTrackOf(sequence)),
              (Lines{"0.0 note 0 60 100 0 1.0", "0.0 meta 58 04 02 18 08"}));
}

TEST_F(MusicTrackEvents, WithoutATrackEveryAdditionAnswersNoSequence)
{
    EXPECT_EQ(MusicTrackNewMIDINoteEvent(nullptr, 0.0, {}), kAudioToolboxErr_NoSequence);
    EXPECT_EQ(MusicTrackNewMIDIChannelEvent(nullptr, 0.0, {}), kAudioToolboxErr_NoSequence);
    EXPECT_EQ(tryRawData(nullptr, 0.0, {}), kAudioToolboxErr_NoSequence);
    EXPECT_EQ(tryMeta(nullptr, 0.0, 0, {}), kAudioToolboxErr_NoSequence);
    EXPECT_EQ(tryUserData(nullptr, 0.0, {}), kAudioToolboxErr_NoSequence);
    EXPECT_EQ(MusicTrackNewExtendedTempoEvent(nullptr, 0.0, 1.0), kAudioToolboxErr_NoSequence);
    EXPECT_EQ(MusicTrackNewExtendedNoteEvent(nullptr, 0.0, {}), kAudioToolboxErr_NoSequence);
    EXPECT_EQ(MusicTrackNewParameterEvent(nullptr, 0.0, {}), kAudioToolboxErr_NoSequence);
    EXPECT_EQ(MusicTrackNewAUPresetEvent(nullptr, 0.0, {}), kAudioToolboxErr_NoSequence);
}

TEST_F(MusicTrackEvents, AdditionsRaiseTheLengthToTheEndOfTheLatestEvent)
{
    addNote(track, 4.0, 60, 2.0F);
    EXPECT_EQ(lengthOf(track), 6.0);
    addNote(track, 1.0, 60, 1.0F);
    EXPECT_EQ(lengthOf(track), 6.0);
    addMessage(track, 7.0, 0xC0, 1);
    EXPECT_EQ(lengthOf(track), 7.0);
    EXPECT_EQ(MusicTrackNewExtendedNoteEvent(track, 7.0, {0, 0, 0.5F, {}}), noErr);
    EXPECT_EQ(lengthOf(track), 7.5);
    addMeta(track, 16.0, 0x2F, {});
    EXPECT_EQ(lengthOf(track), 16.0);
    setLength(track, 2.0);
    EXPECT_EQ(lengthOf(track), 2.0);
}

TEST_F(MusicTrackEvents, LongRecordsAreKeptWholeAndAligned)
{
    const std::vector<std::size_t> counts{0, 1, 3, 4, 5, 8, 9, 100'001};
    Bytes bytes(counts.back());
    for (std::size_t i = 0; i < bytes.size(); ++i) {
        bytes[i] = static_cast<std::uint8_t>(i % 251);
    }
    for (const std::size_t count : counts) {
        addRawData(track, 0.0, {bytes.begin(), bytes.begin() + static_cast<std::ptrdiff_t>(count)});
    }
    const MusicEventIterator iterator = iteratorOf(track);
    for (const std::size_t count : counts) {
        double time = 1.0;
        MusicEventType type = 0;
        const void* payload = nullptr;
        std::uint32_t size = 0;
        ASSERT_EQ(MusicEventIteratorGetEventInfo(iterator, time, type, payload, size), noErr);
        EXPECT_EQ(reinterpret_cast<std::uintptr_t>(payload) % 8, 0U);
        EXPECT_GE(size, sizeof(MIDIRawData));
        EXPECT_EQ(size, std::max(sizeof(MIDIRawData), 4 + count));
        const auto* const raw = static_cast<const MIDIRawData*>(payload);
        ASSERT_EQ(raw->length, count);
        EXPECT_EQ(std::memcmp(&raw->data[0], bytes.data(), count), 0);
        MusicEventIteratorNextEvent(iterator);
    }
}

TEST_F(MusicTrackEvents, ARecordMayComeFromTheSameTrack)
{
    addMeta(track, 0.0, 0x01, hex("\"a text that is longer than eight bytes\""));
    addNote(track, 0.0, 60);
    for (int i = 0; i < 200; ++i) {
        const MusicEventIterator iterator = iteratorOf(track);
        double time = 0.0;
        MusicEventType type = 0;
        const void* payload = nullptr;
        std::uint32_t size = 0;
        MusicEventIteratorGetEventInfo(iterator, time, type, payload, size);
        EXPECT_EQ(MusicTrackNewMetaEvent(track, 1.0 + i, static_cast<const MIDIMetaEvent*>(payload)), noErr);
        MusicEventIteratorNextEvent(iterator);
        MusicEventIteratorGetEventInfo(iterator, time, type, payload, size);
        EXPECT_EQ(MusicTrackNewMIDINoteEvent(track, 1.0 + i, *static_cast<const MIDINoteMessage*>(payload)),
                  noErr);
    }
    const Lines lines = eventsOf(track);
    ASSERT_EQ(lines.size(), 402U);
    EXPECT_EQ(lines[400].substr(5), lines[0].substr(3));
    EXPECT_EQ(lines[401], "200.0 note 0 60 100 0 1.0");
}

TEST_F(MusicTrackEvents, AHundredThousandAdditionsInReverseOrderStandInOrder)
{
    constexpr int count = 100'000;
    for (int i = count; i-- > 0;) {
        addNote(track, i, 60, 0.5F);
    }
    const MusicEventIterator iterator = iteratorOf(track);
    for (int i = 0; i < count; ++i) {
        double time = -1.0;
        MusicEventType type = 0;
        const void* payload = nullptr;
        std::uint32_t size = 0;
        ASSERT_EQ(MusicEventIteratorGetEventInfo(iterator, time, type, payload, size), noErr);
        ASSERT_EQ(time, i);
        MusicEventIteratorNextEvent(iterator);
    }
    EXPECT_EQ(lengthOf(track), 99'999.5);
}

} // namespace

} // namespace volvelle::test
