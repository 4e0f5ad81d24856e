#include "tests/services/musicsequence/SequenceTools.h"

#include <gtest/gtest.h>

namespace volvelle::test {

namespace {

constexpr auto preserve = kMusicSequenceLoadSMF_PreserveTracks;
constexpr auto split = kMusicSequenceLoadSMF_ChannelsToTracks;

const Bytes tempoBody = hex("00 FF5103 07A120 60 FF5103 0F4240 60 FF2F00");
const Bytes emptyBody = hex("60 FF2F00");
const Bytes nothing = hex("00 FF2F00");

TEST(SMFLoader, AFirstTrackOfTemposIsTheTempoTrackAndNoOther)
{
    for (const auto flags : {preserve, split}) {
        const MusicSequence sequence = load(fileOf(1, 96, {tempoBody, hex("00 C001 00 FF2F00")}), flags);
        EXPECT_EQ(trackCountOf(sequence), 1U);
        EXPECT_EQ(eventsOf(tempoTrackOf(sequence)), (Lines{"0.0 tempo 120.0", "1.0 tempo 60.0"}));
        EXPECT_EQ(lengthOf(tempoTrackOf(sequence)), 2.0);
    }
}

TEST(SMFLoader, AnEmptyFirstTrackIsTheTempoTrackToo)
{
    for (const auto flags : {preserve, split}) {
        const MusicSequence sequence = load(fileOf(1, 96, {emptyBody, hex("00 C001 00 FF2F00")}), flags);
        EXPECT_EQ(trackCountOf(sequence), 1U);
        EXPECT_EQ(lengthOf(tempoTrackOf(sequence)), 1.0);
    }
}

TEST(SMFLoader, AFirstTrackWithAnythingElseIsATrack)
{
    const Bytes conductor = hex("00 FF5804 04021808 00 FF5103 07A120 00 FF2F00");
    const MusicSequence sequence = load(fileOf(1, 96, {conductor, emptyBody}), preserve);
    EXPECT_EQ(trackCountOf(sequence), 2U);
    EXPECT_EQ(eventsOf(trackOf(sequence, 0)), Lines{"0.0 meta 58 04 02 18 08"});
    EXPECT_EQ(eventsOf(tempoTrackOf(sequence)), Lines{"0.0 tempo 120.0"});
}

TEST(SMFLoader, TheOnlyTrackOfAFileIsATrack)
{
    for (const int format : {0, 1}) {
        const MusicSequence sequence = load(fileOf(format, 96, {tempoBody}), preserve);
        EXPECT_EQ(trackCountOf(sequence), 1U);
        EXPECT_EQ(eventsOf(trackOf(sequence, 0)), Lines{});
        EXPECT_EQ(lengthOf(trackOf(sequence, 0)), 2.0);
        EXPECT_EQ(eventsOf(tempoTrackOf(sequence)).size(), 2U);
    }
}

TEST(SMFLoader, TemposOfAllTracksGoToTheTempoTrackByTime)
{
    const Bytes later = hex("8100 FF5103 07A120 00 C001 00 FF2F00");
    const Bytes sooner = hex("60 FF5103 0F4240 00 C101 00 FF2F00");
    for (const auto flags : {preserve, split}) {
        const MusicSequence sequence = load(fileOf(1, 96, {later, sooner}), flags);
        EXPECT_EQ(eventsOf(tempoTrackOf(sequence)),
                  (Lines{"1.0 tempo 60.0", "1.3333333333333333 tempo 120.0"}));
    }
}

TEST(SMFLoader, EachChannelGetsItsTrackInAscendingOrder)
{
    const Bytes body = hex("00 FF0301 \"A\" 00 C905 00 903C64 00 F001F7 60 3C00 00 B30701 60 FF2F00");
    const MusicSequence sequence = load(fileOf(0, 96, {body}), split);
    ASSERT_EQ(trackCountOf(sequence), 4U);
    EXPECT_EQ(eventsOf(trackOf(sequence, 0)), Lines{"0.0 note 0 60 100 0 1.0"});
    EXPECT_EQ(eventsOf(trackOf(sequence, 1)), Lines{"1.0 message B3 07 01"});
    EXPECT_EQ(eventsOf(trackOf(sequence, 2)), Lines{"0.0 message C9 05 00"});
    EXPECT_EQ(eventsOf(trackOf(sequence, 3)), (Lines{"0.0 meta 03 41", "0.0 raw F0 F7"}));
    for (std::uint32_t i = 0; i < 4; ++i) {
        EXPECT_EQ(lengthOf(trackOf(sequence, i)), 2.0);
    }
}

TEST(SMFLoader, WithoutOtherEventsThereIsNoFurtherTrack)
{
    EXPECT_EQ(trackCountOf(load(fileOf(0, 96, {hex("00 C001 00 C101 00 FF2F00")}), split)), 2U);
}

TEST(SMFLoader, OfSeveralTracksThatFeedAChannelTheLatestEndCounts)
{
    const MusicSequence sequence = load(
        fileOf(1, 96, {hex("60 C001 60 FF2F00"), hex("00 C002 8240 FF2F00"), hex("8500 FF2F00")}), split);
    ASSERT_EQ(trackCountOf(sequence), 1U);
    EXPECT_EQ(eventsOf(trackOf(sequence, 0)), (Lines{"0.0 message C0 02 00", "1.0 message C0 01 00"}));
    EXPECT_NEAR(lengthOf(trackOf(sequence, 0)), 320.0 / 96.0, 1e-12);
}

TEST(SMFLoader, EqualTimesKeepTheOrderOfTheFile)
{
    const MusicSequence sequence =
        load(fileOf(1, 96, {hex("00 C001 00 C002 00 FF2F00"), hex("00 C003 00 FF2F00")}), split);
    EXPECT_EQ(eventsOf(trackOf(sequence, 0)),
              (Lines{"0.0 message C0 01 00", "0.0 message C0 02 00", "0.0 message C0 03 00"}));
}

TEST(SMFLoader, AFileWithoutAnyChannelEventKeepsItsTracks)
{
    const Bytes named = hex("00 FF0301 \"A\" 60 FF2F00");
    for (const auto flags : {preserve, split}) {
        const MusicSequence sequence = load(fileOf(1, 96, {nothing, named, emptyBody, named}), flags);
        ASSERT_EQ(trackCountOf(sequence), 3U);
        EXPECT_EQ(eventsOf(trackOf(sequence, 0)), Lines{"0.0 meta 03 41"});
        EXPECT_EQ(eventsOf(trackOf(sequence, 1)), Lines{});
        EXPECT_EQ(lengthOf(trackOf(sequence, 1)), 1.0);
    }
}

TEST(SMFLoader, AnEmptySequenceOfSixteenTracksComesBackAsSuch)
{
    const MusicSequence sequence = newSequence();
    for (int i = 0; i < 16; ++i) {
        setLength(newTrack(sequence), i);
    }
    for (const auto flags : {preserve, split}) {
        const MusicSequence again = load(save(sequence), flags);
        ASSERT_EQ(trackCountOf(again), 16U);
        EXPECT_EQ(eventsOf(tempoTrackOf(again)), Lines{});
        for (std::uint32_t i = 0; i < 16; ++i) {
            EXPECT_EQ(eventsOf(trackOf(again, i)), Lines{});
            EXPECT_EQ(lengthOf(trackOf(again, i)), i);
        }
        EXPECT_EQ(save(again), save(sequence));
    }
}

TEST(SMFLoader, TheTracksOfBeforeAreReplaced)
{
    const MusicSequence sequence = newSequence();
    const MusicTrack before = newTrack(sequence);
    const MusicTrack tempo = tempoTrackOf(sequence);
    addTempo(sequence, 0.0, 33.0);
    const MusicEventIterator iterator = iteratorOf(tempo);
    addNote(before, 0.0, 60);
    EXPECT_EQ(MusicSequenceFileLoadData(sequence, fileOf(1, 96, {tempoBody, emptyBody}),
                                        kMusicSequenceFile_MIDIType, preserve),
              noErr);
    EXPECT_EQ(trackCountOf(sequence), 1U);
    EXPECT_EQ(tempoTrackOf(sequence), tempo);
    EXPECT_EQ(eventsOf(tempo), (Lines{"0.0 tempo 120.0", "1.0 tempo 60.0"}));
    EXPECT_EQ(MusicTrackNewMIDINoteEvent(before, 0.0, {}), kAudioToolboxErr_NoSequence);
    bool flag = true;
    EXPECT_EQ(MusicEventIteratorHasCurrentEvent(iterator, flag), noErr);
    EXPECT_FALSE(flag);
}

TEST(SMFLoader, AFailedLoadChangesNothing)
{
    const MusicSequence sequence = load(fileOf(1, 100, {nothing, hex("00 903C64 00 FF2F00")}));
    const Bytes before = save(sequence);
    const Lines warnings = warningsOf(sequence);
    EXPECT_EQ(MusicSequenceFileLoadData(sequence, hex("\"no such file\""), kMusicSequenceFile_MIDIType, 0),
              fileFormatErr);
    EXPECT_EQ(MusicSequenceFileLoadData(sequence, before, 0, 0), kAudioToolboxErr_InvalidSequenceType);
    EXPECT_EQ(save(sequence), before);
    EXPECT_EQ(warningsOf(sequence), warnings);
    EXPECT_FALSE(warnings.empty());
}

TEST(SMFLoader, ACleanLoadForgetsTheWarningsOfTheOneBefore)
{
    const MusicSequence sequence = load(fileOf(1, 100, {hex("00 903C64 00 FF2F00")}));
    EXPECT_EQ(warningsOf(sequence).size(), 1U);
    EXPECT_EQ(MusicSequenceFileLoadData(sequence, fileOf(1, 96, {nothing}), kMusicSequenceFile_MIDIType, 0),
              noErr);
    EXPECT_EQ(warningsOf(sequence), Lines{});
}

} // namespace

} // namespace volvelle::test
