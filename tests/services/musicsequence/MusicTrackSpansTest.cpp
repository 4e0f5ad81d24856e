#include "base/Text.h"
#include "tests/services/musicsequence/SequenceTools.h"
#include "tests/support/AllocationCount.h"

#include <gtest/gtest.h>
#include <limits>
#include <tuple>

namespace volvelle::test {

namespace {

constexpr double infinite = std::numeric_limits<double>::infinity();

// "time:number" of each note.
std::string notesOf(const MusicTrack& track)
{
    std::string result;
    for (const std::string& line : eventsOf(track)) {
        const std::size_t blank = line.find(' ');
        const std::size_t number = line.find(' ', blank + 6) + 1;
        result += concat(result.empty() ? "" : " ", line.substr(0, blank), ":",
                         line.substr(number, line.find(' ', number) - number));
    }
    return result;
}

// Notes 60 to 63 on the beats 0 to 3, each half a beat long, in a track of 4 beats.
class MusicTrackSpans : public testing::Test {
protected:
    MusicTrackSpans()
    {
        for (int i = 0; i < 4; ++i) {
            addNote(track, i, 60 + i, 0.5F);
        }
        setLength(track, 4.0);
        addNote(other, 0.0, 40, 0.5F);
        addNote(other, 2.0, 42, 0.5F);
        setLength(other, 4.0);
    }

    MusicSequence sequence = newSequence();
    MusicTrack track = newTrack(sequence);
    MusicTrack other = newTrack(sequence);
};

TEST_F(MusicTrackSpans, ClearDeletesAHalfOpenSpanAndLeavesTheRest)
{
    EXPECT_EQ(MusicTrackClear(track, 1.0, 3.0), noErr);
    EXPECT_EQ(notesOf(track), "0.0:60 3.0:63");
    EXPECT_EQ(lengthOf(track), 4.0);
}

TEST_F(MusicTrackSpans, ASpanWhoseStartEqualsItsEndHoldsNothing)
{
    EXPECT_EQ(MusicTrackClear(track, 1.0, 1.0), noErr);
    EXPECT_EQ(MusicTrackClear(track, 4.0, 4.0), noErr);
    EXPECT_EQ(MusicTrackCut(track, 1.0, 1.0), noErr);
    EXPECT_EQ(MusicTrackCopyInsert(track, 1.0, 1.0, other, 0.0), noErr);
    EXPECT_EQ(MusicTrackMerge(track, 1.0, 1.0, other, 0.0), noErr);
    EXPECT_EQ(MusicTrackMoveEvents(track, 1.0, 1.0, 9.0), noErr);
    EXPECT_EQ(notesOf(track), "0.0:60 1.0:61 2.0:62 3.0:63");
    EXPECT_EQ(notesOf(other), "0.0:40 2.0:42");
    EXPECT_EQ(lengthOf(track), 4.0);
    EXPECT_EQ(lengthOf(other), 4.0);
}

TEST_F(MusicTrackSpans, ASpanThatReachesTheLengthTakesInWhatStandsBehindIt)
{
    addMessage(track, 4.0, 0xC0, 1);
    setLength(track, 3.5);
    EXPECT_EQ(MusicTrackClear(track, 2.5, 3.4), noErr);
    EXPECT_EQ(eventsOf(track).size(), 4U);
    EXPECT_EQ(MusicTrackClear(track, 2.5, 3.5), noErr);
    EXPECT_EQ(notesOf(track), "0.0:60 1.0:61 2.0:62");
}

TEST_F(MusicTrackSpans, CutMovesLaterEventsEarlierAndShortensTheTrack)
{
    EXPECT_EQ(MusicTrackCut(track, 1.0, 2.5), noErr);
    EXPECT_EQ(notesOf(track), "0.0:60 1.5:63");
    EXPECT_EQ(lengthOf(track), 2.5);
}

TEST_F(MusicTrackSpans, CutOfMoreThanThereIsEndsTheTrackAtItsStart)
{
    EXPECT_EQ(MusicTrackCut(track, 2.0, 100.0), noErr);
    EXPECT_EQ(notesOf(track), "0.0:60 1.0:61");
    EXPECT_EQ(lengthOf(track), 2.0);
    EXPECT_EQ(MusicTrackCut(track, 50.0, 60.0), noErr);
    EXPECT_EQ(lengthOf(track), 2.0);
}

TEST_F(MusicTrackSpans, CopyInsertMakesRoomInTheDestination)
{
    EXPECT_EQ(MusicTrackCopyInsert(track, 1.0, 3.0, other, 2.0), noErr);
    EXPECT_EQ(notesOf(other), "0.0:40 2.0:61 3.0:62 4.0:42");
    EXPECT_EQ(lengthOf(other), 6.0);
    EXPECT_EQ(notesOf(track), "0.0:60 1.0:61 2.0:62 3.0:63");
}

TEST_F(MusicTrackSpans, CopyInsertMayReadAndWriteOneTrack)
{
    EXPECT_EQ(MusicTrackCopyInsert(track, 0.0, 2.0, track, 1.0), noErr);
    EXPECT_EQ(notesOf(track), "0.0:60 1.0:60 2.0:61 3.0:61 4.0:62 5.0:63");
    EXPECT_EQ(lengthOf(track), 6.0);
}

TEST_F(MusicTrackSpans, CopyInsertBehindTheEndLeavesAGap)
{
    EXPECT_EQ(MusicTrackCopyInsert(track, 3.0, 4.0, other, 10.0), noErr);
    EXPECT_EQ(notesOf(other), "0.0:40 2.0:42 10.0:63");
    EXPECT_EQ(lengthOf(other), 10.5);
}

TEST_F(MusicTrackSpans, MergeLeavesTheDestinationsEventsWhereTheyAre)
{
    EXPECT_EQ(MusicTrackMerge(track, 2.0, 4.0, other, 1.0), noErr);
    EXPECT_EQ(notesOf(other), "0.0:40 1.0:62 2.0:42 2.0:63");
    EXPECT_EQ(lengthOf(other), 4.0);
    EXPECT_EQ(MusicTrackMerge(track, 0.0, 100.0, other, 8.0), noErr);
    EXPECT_EQ(lengthOf(other), 11.5);
}

TEST_F(MusicTrackSpans, MergeMayReadAndWriteOneTrack)
{
    EXPECT_EQ(MusicTrackMerge(track, 0.0, 4.0, track, 0.0), noErr);
    EXPECT_EQ(notesOf(track), "0.0:60 0.0:60 1.0:61 1.0:61 2.0:62 2.0:62 3.0:63 3.0:63");
}

TEST_F(MusicTrackSpans, LongRecordsAreCopiedWhole)
{
    addMeta(track, 0.5, 0x01, hex("\"a long text, too long for an event\""));
    EXPECT_EQ(MusicTrackMerge(track, 0.5, 0.6, other, 0.5), noErr);
    EXPECT_EQ(MusicTrackCopyInsert(track, 0.5, 0.6, track, 0.5), noErr);
    EXPECT_EQ(eventsOf(other).at(1), eventsOf(track).at(1));
    EXPECT_EQ(eventsOf(track).at(2).substr(4), eventsOf(track).at(1).substr(4));
}

TEST_F(MusicTrackSpans, WhatLongRecordsTookIsGivenBackWithTheirEvents)
{
    constexpr std::size_t length = 100'000;
    const Bytes bytes(length, 1);
    addRawData(other, 9.0, bytes);
    const AllocationCount allocations;
    for (int i = 0; i < 100; ++i) {
        addRawData(track, 1.0, bytes);
        EXPECT_EQ(MusicTrackClear(track, 0.0, 10.0), noErr);
        addRawData(other, 1.0, bytes);
        EXPECT_EQ(MusicTrackClear(other, 1.0, 2.0), noErr);
    }
    EXPECT_LE(allocations.greatest, 8 * length);
}

TEST_F(MusicTrackSpans, CopiesMayGoToAnotherSequence)
{
    const MusicSequence second = newSequence();
    const MusicTrack destination = newTrack(second);
    EXPECT_EQ(MusicTrackMerge(track, 0.0, 2.0, destination, 1.0), noErr);
    EXPECT_EQ(notesOf(destination), "1.0:60 2.0:61");
}

TEST_F(MusicTrackSpans, MoveAddsToTheTimesOfTheSpan)
{
    EXPECT_EQ(MusicTrackMoveEvents(track, 1.0, 3.0, 1.0), noErr);
    EXPECT_EQ(notesOf(track), "0.0:60 2.0:61 3.0:63 3.0:62");
    EXPECT_EQ(MusicTrackMoveEvents(track, 2.0, 4.0, -2.0), noErr);
    EXPECT_EQ(notesOf(track), "0.0:60 0.0:61 1.0:63 1.0:62");
    EXPECT_EQ(lengthOf(track), 4.0);
    EXPECT_EQ(MusicTrackMoveEvents(track, 0.0, 4.0, 10.0), noErr);
    EXPECT_EQ(lengthOf(track), 11.5);
}

TEST_F(MusicTrackSpans, AMoveToBelowZeroChangesNothing)
{
    EXPECT_EQ(MusicTrackMoveEvents(track, 1.0, 4.0, -1.5), kAudioToolboxErr_StartOfTrack);
    EXPECT_EQ(notesOf(track), "0.0:60 1.0:61 2.0:62 3.0:63");
    EXPECT_EQ(MusicTrackMoveEvents(track, 1.0, 4.0, -1.0), noErr);
    EXPECT_EQ(notesOf(track), "0.0:60 0.0:61 1.0:62 2.0:63");
}

TEST_F(MusicTrackSpans, WrongTimesAreRefused)
{
    const double noNumber = std::numeric_limits<double>::quiet_NaN();
    const std::vector<std::tuple<double, double>> spans{
        {-1.0, 1.0}, {noNumber, 1.0}, {0.0, noNumber}, {0.0, infinite}, {2.0, 1.0}};
    for (const auto& [start, end] : spans) {
        EXPECT_EQ(MusicTrackClear(track, start, end), kAudioToolboxErr_InvalidEventType);
        EXPECT_EQ(MusicTrackCut(track, start, end), kAudioToolboxErr_InvalidEventType);
        EXPECT_EQ(MusicTrackCopyInsert(track, start, end, other, 0.0), kAudioToolboxErr_InvalidEventType);
        EXPECT_EQ(MusicTrackMerge(track, start, end, other, 0.0), kAudioToolboxErr_InvalidEventType);
        EXPECT_EQ(MusicTrackMoveEvents(track, start, end, 1.0), kAudioToolboxErr_InvalidEventType);
    }
    for (const double at : {-1.0, infinite, noNumber}) {
        EXPECT_EQ(MusicTrackCopyInsert(track, 0.0, 1.0, other, at), kAudioToolboxErr_InvalidEventType);
        EXPECT_EQ(MusicTrackMerge(track, 0.0, 1.0, other, at), kAudioToolboxErr_InvalidEventType);
    }
    EXPECT_EQ(MusicTrackMoveEvents(track, 0.0, 1.0, infinite), kAudioToolboxErr_InvalidEventType);
    EXPECT_EQ(MusicTrackMoveEvents(track, 0.0, 1.0, noNumber), kAudioToolboxErr_InvalidEventType);
}

TEST_F(MusicTrackSpans, TimesThatWouldBecomeInfiniteAreRefused)
{
    const double greatest = std::numeric_limits<double>::max();
    addMessage(track, greatest, 0xC0, 1);
    EXPECT_EQ(MusicTrackMoveEvents(track, 0.0, greatest, greatest), kAudioToolboxErr_InvalidEventType);
    EXPECT_EQ(MusicTrackMerge(track, 0.0, greatest, other, greatest), kAudioToolboxErr_InvalidEventType);
    EXPECT_EQ(MusicTrackCopyInsert(other, 0.0, greatest, track, 0.0), kAudioToolboxErr_InvalidEventType);
    EXPECT_EQ(eventsOf(track).size(), 5U);
    EXPECT_EQ(notesOf(other), "0.0:40 2.0:42");
}

TEST_F(MusicTrackSpans, TemposAreNotCopiedToAMusicTrack)
{
    addTempo(sequence, 1.0, 120.0);
    const MusicTrack tempo = tempoTrackOf(sequence);
    EXPECT_EQ(MusicTrackMerge(tempo, 0.0, 4.0, other, 0.0), kAudioToolboxErr_IllegalTrackDestination);
    EXPECT_EQ(MusicTrackCopyInsert(tempo, 0.0, 4.0, other, 0.0), kAudioToolboxErr_IllegalTrackDestination);
    EXPECT_EQ(MusicTrackMerge(tempo, 0.0, 0.5, other, 0.0), noErr);
    EXPECT_EQ(MusicTrackMerge(tempo, 0.0, 4.0, tempo, 4.0), noErr);
    EXPECT_EQ(eventsOf(tempo), (Lines{"1.0 tempo 120.0", "5.0 tempo 120.0"}));
    EXPECT_EQ(notesOf(other), "0.0:40 2.0:42");
}

TEST_F(MusicTrackSpans, WithoutATrackEverySpanAnswersNoSequence)
{
    EXPECT_EQ(MusicTrackClear(nullptr, 0.0, 1.0), kAudioToolboxErr_NoSequence);
    EXPECT_EQ(MusicTrackCut(nullptr, 0.0, 1.0), kAudioToolboxErr_NoSequence);
    EXPECT_EQ(MusicTrackCopyInsert(nullptr, 0.0, 1.0, track, 0.0), kAudioToolboxErr_NoSequence);
    EXPECT_EQ(MusicTrackCopyInsert(track, 0.0, 1.0, nullptr, 0.0), kAudioToolboxErr_NoSequence);
    EXPECT_EQ(MusicTrackMerge(nullptr, 0.0, 1.0, track, 0.0), kAudioToolboxErr_NoSequence);
    EXPECT_EQ(MusicTrackMerge(track, 0.0, 1.0, nullptr, 0.0), kAudioToolboxErr_NoSequence);
    EXPECT_EQ(MusicTrackMoveEvents(nullptr, 0.0, 1.0, 1.0), kAudioToolboxErr_NoSequence);
}

} // namespace

} // namespace volvelle::test
