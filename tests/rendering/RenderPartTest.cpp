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

MIDINoteMessage note(int key, float duration)
{
    return {3, static_cast<std::uint8_t>(key), 100, 0, duration};
}

TEST(RenderPart, APieceIsNotCutWhereAKeyThatIsDownIsStruckAgain)
{
    EXPECT_EQ(seamOf({}, {{28.0, note(60, 5.0F)}, {32.0, note(60, 1.0F)}}), 33);
    EXPECT_EQ(seamOf({}, {{29.5, note(60, 5.0F)}, {30.5, note(60, 1.0F)}}), 31);
    EXPECT_EQ(seamOf({}, {{28.0, note(60, 5.0F)}, {32.0, note(61, 1.0F)}}), 30);
    EXPECT_EQ(seamOf({}, {{28.0, note(60, 4.0F)}, {32.0, note(60, 1.0F)}}), 30);
    EXPECT_EQ(seamOf({}, {{30.0, note(60, 5.0F)}, {32.0, note(60, 1.0F)}}), 30);
    EXPECT_EQ(seamOf({}, {{20.0, note(60, 5.0F)}, {29.0, note(60, 1.0F)}}), 30);
}

TEST(RenderPart, APieceIsNotCutWhereAKeyThatAPedalHoldsIsStruckAgain)
{
    const Notes again{{28.0, note(60, 1.0F)}, {35.0, note(60, 1.0F)}};
    for (const int pedal : {64, 69}) {
        const Event on{20.0, {0xB3, pedal, 64}};
        EXPECT_EQ(seamOf({on}, again), 36);
        EXPECT_EQ(seamOf({{28.5, {0xB3, pedal, 64}}}, again), 36);
        EXPECT_EQ(seamOf({{29.5, {0xB3, pedal, 64}}}, again), 30);
        EXPECT_EQ(seamOf({on, {31.0, {0xB3, pedal, 63}}}, again), 30);
        EXPECT_EQ(seamOf({on, {31.0, {0xB3, 121, 0}}}, again), 30);
        EXPECT_EQ(seamOf({{20.0, {0xB2, pedal, 64}}}, again), 30);
        EXPECT_EQ(seamOf({on}, {{28.0, note(60, 1.0F)}, {35.0, note(61, 1.0F)}}), 30);
    }
}

TEST(RenderPart, TheSostenutoHoldsWhatWasDownWhenItCame)
{
    const Notes again{{28.0, note(60, 1.0F)}, {35.0, note(60, 1.0F)}};
    EXPECT_EQ(seamOf({{28.5, {0xB3, 66, 64}}}, again), 36);
    EXPECT_EQ(seamOf({{28.5, {0xB3, 66, 64}}, {31.0, {0xB3, 66, 0}}}, again), 30);
    EXPECT_EQ(seamOf({{20.0, {0xB3, 66, 64}}}, again), 30);
    EXPECT_EQ(seamOf({{29.5, {0xB3, 66, 64}}}, again), 30);
    EXPECT_EQ(seamOf({{31.5, {0xB3, 66, 127}}, {40.0, {0xB3, 66, 0}}},
                     {{29.0, note(64, 3.0F)}, {33.0, note(64, 0.25F)}}),
              34);
}

TEST(RenderPart, APieceIsNotCutWhereANoteIsBoundByLegatoToAKeyThatIsDown)
{
    const Event on{10.0, {0xB3, 68, 64}};
    EXPECT_EQ(seamOf({on}, {{28.0, note(60, 5.0F)}, {31.0, note(62, 1.0F)}}), 33);
    EXPECT_EQ(seamOf({on}, {{28.0, note(60, 3.5F)}, {31.0, note(62, 9.0F)}}), 32);
    EXPECT_EQ(seamOf({on}, {{28.0, note(60, 3.0F)}, {31.0, note(62, 1.0F)}}), 30);
    EXPECT_EQ(seamOf({on}, {{28.0, note(60, 5.0F)}}), 30);
    EXPECT_EQ(seamOf({on}, {{28.0, note(60, 5.0F)}, {30.0, note(72, 0.0F)}}), 31);
    const Notes both{{28.0, note(60, 5.0F)}, {32.0, note(62, 0.5F)}};
    EXPECT_EQ(seamOf({}, both), 30);
    EXPECT_EQ(seamOf({{31.0, {0xB3, 68, 64}}}, both), 33);
    EXPECT_EQ(seamOf({{31.0, {0xB3, 68, 64}}, {31.5, {0xB3, 68, 63}}}, both), 32);
    EXPECT_EQ(seamOf({{31.0, {0xB2, 68, 64}}}, both), 30);
    EXPECT_EQ(seamOf({{31.0, {0xB3, 126, 0}}}, both), 30);
}

TEST(RenderPart, APieceIsNotCutUnderLegatoWithPortamento)
{
    const Event legato{10.0, {0xB3, 68, 64}};
    const Event portamento{12.0, {0xB3, 65, 64}};
    EXPECT_EQ(seamOf({legato, portamento, {33.5, {0xB3, 65, 63}}}), 34);
    EXPECT_EQ(seamOf({legato, portamento, {33.5, {0xB3, 68, 63}}}), 34);
    EXPECT_EQ(seamOf({legato, portamento}), uncut);
    EXPECT_EQ(seamOf({legato}), 30);
    EXPECT_EQ(seamOf({portamento}), 30);
}

TEST(RenderPart, APieceIsCutUpToThirtyTwoBeatsLaterOrNotAtAll)
{
    const auto repeated = [](int end) {
        Notes notes;
        for (int beat = 20; beat <= end; ++beat) {
            notes.emplace_back(beat, note(60, 0.5F));
        }
        return seamOf({{10.0, {0xB3, 64, 64}}}, notes);
    };
    EXPECT_EQ(repeated(31), 32);
    EXPECT_EQ(repeated(58), 59);
    EXPECT_EQ(repeated(61), 62);
    EXPECT_EQ(repeated(66), uncut);
}

TEST(RenderPart, AResetByASystemExclusiveLiftsThePedals)
{
    const auto cut = [](double reset) {
        Song song;
        song.message(10.0, 0xB3, 64, 64).exclusive(reset, {0xF0, 0x7E, 0x7F, 0x09, 0x01, 0xF7});
        song.note(28.0, 3, 60, 100, 1.0).note(35.0, 3, 60, 100, 1.0);
        const auto parts = pieceRead(song.length(60.0).file()).parts(2);
        return parts.size() == 2 ? std::lround(parts[1].beginBeats) : uncut;
    };
    EXPECT_EQ(cut(31.0), 30);
    EXPECT_EQ(cut(37.0), 36);
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
