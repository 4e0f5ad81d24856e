#include "rendering/RenderPart.h"

#include "tests/rendering/BeatPiece.h"
#include "tests/rendering/PieceRead.h"
#include "tests/services/audiograph/sequencer/Song.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <array>
#include <cmath>
#include <utility>
#include <vector>

namespace volvelle::test {

namespace {

using testing::SizeIs;

constexpr double blocksPerSecond = 48000.0 / RenderPart::blockFrames;
constexpr long uncut = 0;

struct Event {
    double beat;
    std::array<int, 3> bytes;
};

using Notes = std::vector<std::pair<double, MIDINoteMessage>>;

// Sixty beats of half a second each, with more on top.
MusicSequence sequenceWith(const std::vector<Event>& events, const Notes& notes)
{
    MusicSequence sequence = sequenceOf(60, 120.0);
    MusicTrack track;
    EXPECT_EQ(MusicSequenceGetIndTrack(sequence, 0, track), noErr);
    for (const auto& [beat, bytes] : events) {
        const MIDIChannelMessage message{static_cast<std::uint8_t>(bytes[0]),
                                         static_cast<std::uint8_t>(bytes[1]),
                                         static_cast<std::uint8_t>(bytes[2])};
        EXPECT_EQ(MusicTrackNewMIDIChannelEvent(track, beat, message), noErr);
    }
    for (const auto& [beat, note] : notes) {
        EXPECT_EQ(MusicTrackNewMIDINoteEvent(track, beat, note), noErr);
    }
    return sequence;
}

// The beat at which the piece is cut for two cores.
long seamIn(const SequencerEvents& piece)
{
    const auto parts = cutIntoParts(piece, 2);
    return parts.size() == 2 ? std::lround(parts[1].beginBeats) : uncut;
}

long seamOf(const std::vector<Event>& events, const Notes& notes = {})
{
    return seamIn(eventsOf(sequenceWith(events, notes)));
}

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

TEST(RenderPart, APieceIsCutWhereNoSostenutoOrPortamentoIsOn)
{
    for (const int pedal : {65, 66}) {
        const auto cut = [pedal](double from, double to, int end) {
            return seamOf({{from, {0xB3, pedal, 64}}, {to, {0xB3, end, 63}}});
        };
        EXPECT_EQ(cut(40.0, 41.0, pedal), 30);
        EXPECT_EQ(cut(10.0, 20.0, pedal), 30);
        EXPECT_EQ(cut(10.0, 33.5, pedal), 34);
        EXPECT_EQ(cut(10.0, 34.0, 121), 34);
        EXPECT_EQ(cut(10.0, 33.5, 64), uncut);
        EXPECT_EQ(cut(30.0, 61.0, pedal), 61);
        EXPECT_EQ(cut(30.0, 64.0, pedal), uncut);
    }
}

TEST(RenderPart, APieceIsCutWhereNoKeyIsDownUnderLegatoOrInOneVoice)
{
    const MIDINoteMessage held{3, 60, 100, 0, 5.0F};
    for (const int binding : {68, 126}) {
        const Event on{10.0, {0xB3, binding, 64}};
        EXPECT_EQ(seamOf({on}), 30);
        EXPECT_EQ(seamOf({on}, {{28.0, held}}), 33);
        EXPECT_EQ(seamOf({on}, {{28.0, held}, {33.0, held}}), 33);
        EXPECT_EQ(seamOf({on}, {{28.0, held}, {32.5, held}}), 38);
        EXPECT_EQ(seamOf({on, {31.5, {0xB3, 126, 0}}}, {{28.0, held}}), 33);
        EXPECT_EQ(seamOf({{10.0, {0xB2, binding, 64}}}, {{28.0, held}}), 30);
    }
    EXPECT_EQ(seamOf({{10.0, {0xB3, 126, 0}}, {31.5, {0xB3, 127, 0}}}, {{28.0, held}}), 32);
    EXPECT_EQ(seamOf({{10.0, {0xB3, 68, 64}}, {31.5, {0xB3, 68, 63}}}, {{28.0, held}}), 32);
}

TEST(RenderPart, APieceIsCutWhereNoChannelIsMadeLouder)
{
    const auto made = [](int select, int number, int value) {
        return std::vector<Event>{{1.0, {0xB3, select, 120}},
                                  {1.0, {0xB3, select - 1, number}},
                                  {1.0, {0xB3, 6, value}},
                                  {31.5, {0xB3, 6, 64}}};
    };
    EXPECT_EQ(seamOf(made(99, 48, 63)), 32);
    EXPECT_EQ(seamOf(made(99, 48, 0)), 32);
    EXPECT_EQ(seamOf(made(99, 48, 64)), 30);
    EXPECT_EQ(seamOf(made(99, 47, 63)), 30);
    EXPECT_EQ(seamOf(made(101, 48, 63)), 30);
}

TEST(RenderPart, AResetByASystemExclusiveSetsNotesFree)
{
    Song song;
    song.message(10.0, 0xB3, 66, 64).exclusive(32.5, {0xF0, 0x7E, 0x7F, 0x09, 0x01, 0xF7});
    const auto parts = pieceRead(song.length(60.0).file()).parts(2);
    ASSERT_THAT(parts, SizeIs(2));
    EXPECT_EQ(std::lround(parts[1].beginBeats), 33);
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
