#include "rendering/RenderPart.h"

#include "tests/rendering/BeatPiece.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <cmath>
#include <string>
#include <vector>

namespace volvelle::test {

namespace {

using testing::SizeIs;

constexpr double blocksPerSecond = 48000.0 / RenderPart::blockFrames;

} // namespace

TEST(RenderPart, OneCoreRendersAPieceInOnePart)
{
    const auto parts = cutIntoParts(piece(60, 120.0), 1);
    ASSERT_THAT(parts, SizeIs(1));
    EXPECT_EQ(parts[0].beginBlock, 0);
    EXPECT_EQ(parts[0].beginBeats, 0.0);
    EXPECT_EQ(parts[0].endBlock, std::ceil(30.0 * blocksPerSecond));
    EXPECT_TRUE(std::isinf(parts[0].endBeats));
    EXPECT_THAT(cutIntoParts(piece(2 * 620, 120.0), 1), SizeIs(1));
}

TEST(RenderPart, AShortPieceIsNotCut)
{
    EXPECT_THAT(cutIntoParts(piece(38, 120.0), 2), SizeIs(1));
    EXPECT_THAT(cutIntoParts(piece(41, 120.0), 2), SizeIs(2));
    EXPECT_THAT(cutIntoParts(piece(41, 120.0), 8), SizeIs(2));
    EXPECT_THAT(cutIntoParts(piece(0, 120.0), 2), SizeIs(1));
}

TEST(RenderPart, EachPartBeginsInTheBlockOfABeatWhereTheOneBeforeEnds)
{
    const auto parts = cutIntoParts(piece(200, 97.0), 3);
    ASSERT_THAT(parts, SizeIs(3));
    for (std::size_t i = 1; i < parts.size(); ++i) {
        EXPECT_EQ(parts[i].beginBlock, parts[i - 1].endBlock);
        EXPECT_EQ(parts[i].beginBeats, parts[i - 1].endBeats);
        const double distance = std::ceil(parts[i].beginBeats) - parts[i].beginBeats;
        EXPECT_LT(distance * 60.0 / 97.0 * blocksPerSecond, 1.0);
    }
}

TEST(RenderPart, APartLastsFiveMinutesAtMostAndEachCoreHasAsManyOfThem)
{
    EXPECT_THAT(cutIntoParts(piece(2 * 620, 120.0), 2), SizeIs(4));
    EXPECT_THAT(cutIntoParts(piece(2 * 590, 120.0), 2), SizeIs(2));
}

TEST(RenderPart, APieceIsCutWhereNoNoteHangsOnOthers)
{
    const auto cut = [](double from, double to, int end) {
        const MusicSequence sequence = sequenceOf(60, 120.0);
        MusicTrack track;
        EXPECT_EQ(MusicSequenceGetIndTrack(sequence, 0, track), noErr);
        EXPECT_EQ(MusicTrackNewMIDIChannelEvent(track, from, {0xB3, 66, 64}), noErr);
        EXPECT_EQ(MusicTrackNewMIDIChannelEvent(track, to, {0xB3, static_cast<std::uint8_t>(end), 63}),
                  noErr);
        return std::lround(cutIntoParts(eventsOf(sequence), 2).at(1).beginBeats);
    };
    EXPECT_EQ(cut(40.0, 41.0, 66), 30);
    EXPECT_EQ(cut(10.0, 20.0, 66), 30);
    EXPECT_EQ(cut(10.0, 33.5, 66), 34);
    EXPECT_EQ(cut(10.0, 34.0, 121), 34);
    EXPECT_EQ(cut(10.0, 33.5, 64), 30);
    for (const int binding : {65, 68}) {
        const MusicSequence sequence = sequenceOf(60, 120.0);
        MusicTrack track;
        EXPECT_EQ(MusicSequenceGetIndTrack(sequence, 0, track), noErr);
        const auto number = static_cast<std::uint8_t>(binding);
        EXPECT_EQ(MusicTrackNewMIDIChannelEvent(track, 10.0, {0xB3, number, 64}), noErr);
        EXPECT_EQ(MusicTrackNewMIDIChannelEvent(track, 35.0, {0xB3, number, 63}), noErr);
        EXPECT_EQ(std::lround(cutIntoParts(eventsOf(sequence), 2).at(1).beginBeats), 35);
    }
    EXPECT_EQ(cut(30.0, 62.0, 66), 62);
    EXPECT_EQ(cut(30.0, 64.0, 66), 32);
}

TEST(RenderPart, APieceLongerThanADayIsToldByItsEndAndCutThere)
{
    MusicSequence sequence = sequenceOf(1, 120.0);
    MusicTrack track;
    EXPECT_EQ(MusicSequenceGetIndTrack(sequence, 0, track), noErr);
    constexpr double day = 24.0 * 3600.0 * 2.0; // beats
    EXPECT_EQ(MusicTrackNewMIDINoteEvent(track, day - 1.0, {0, 60, 100, 0, 1.0F}), noErr);
    EXPECT_EQ(cutIntoParts(eventsOf(sequence), 1).back().endBlock, RenderPart::longestPiece);
    EXPECT_THAT(cutIntoParts(eventsOf(sequence), 2), SizeIs(288));
    for (const double beat : {day, 1.0e13, 1.0e300}) {
        EXPECT_EQ(MusicTrackNewMIDINoteEvent(track, beat, {0, 60, 100, 0, 1.0F}), noErr);
        EXPECT_GT(cutIntoParts(eventsOf(sequence), 1).back().endBlock, RenderPart::longestPiece);
        EXPECT_LT(cutIntoParts(eventsOf(sequence), 1).back().endBlock, RenderPart::longestPiece + 100);
        EXPECT_LE(cutIntoParts(eventsOf(sequence), 2).size(), 290U);
    }
}

} // namespace volvelle::test
