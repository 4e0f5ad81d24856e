#include "rendering/RenderPart.h"

#include "inspection/FileDescription.h"
#include "services/audiograph/sequencer/SequencerEvents.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <cmath>
#include <string>
#include <vector>

namespace volvelle::test {

namespace {

using testing::ElementsAre;
using testing::IsEmpty;
using testing::SizeIs;

constexpr double blocksPerSecond = 48000.0 / RenderPart::blockFrames;

// A note on each beat on channel 0 and 9, a controller on each fourth.
MusicSequence piece(int beats, double bpm)
{
    MusicSequence sequence;
    MusicTrack track;
    EXPECT_EQ(NewMusicSequence(sequence), noErr);
    EXPECT_EQ(MusicSequenceGetTempoTrack(sequence, track), noErr);
    EXPECT_EQ(MusicTrackNewExtendedTempoEvent(track, 0.0, bpm), noErr);
    EXPECT_EQ(MusicSequenceNewTrack(sequence, track), noErr);
    for (int beat = 0; beat < beats; ++beat) {
        const MIDINoteMessage note{0, 60, 100, 0, 1.0F};
        const MIDINoteMessage drum{9, 42, 90, 0, 0.5F};
        EXPECT_EQ(MusicTrackNewMIDINoteEvent(track, beat, note), noErr);
        EXPECT_EQ(MusicTrackNewMIDINoteEvent(track, beat, drum), noErr);
        if (beat % 4 == 0) {
            EXPECT_EQ(MusicTrackNewMIDIChannelEvent(track, beat, {0xB0, 7, 80}), noErr);
        }
    }
    return sequence;
}

// "4: 60 100" for each note, and "4: B0" for each controller, in their order.
std::vector<std::string> linesOf(const MusicSequence& sequence)
{
    SequencerEvents events;
    EXPECT_EQ(events.read(sequence), noErr);
    std::vector<std::string> lines;
    for (const SequencerEvent& event : events.events) {
        const std::string at = std::to_string(std::lround(events.tempo.beats(event.seconds))) + ": ";
        if (event.kind == SequencerEvent::noteOn) {
            lines.push_back(at + std::to_string(event.bytes[1]) + " " + std::to_string(event.bytes[2]));
        } else if (event.kind == SequencerEvent::state) {
            lines.push_back(at + "B0");
        }
    }
    return lines;
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

TEST(RenderPart, APartKeepsItsOwnNotesAndAllElse)
{
    const MusicSequence sequence = piece(6, 120.0);
    RenderPart part;
    part.beginBeats = 2.0;
    part.endBeats = 100.0;
    EXPECT_EQ(eraseNotesOutside(part, sequence), noErr);
    EXPECT_THAT(linesOf(sequence), ElementsAre("0: B0", "2: 60 100", "2: 42 90", "3: 60 100", "3: 42 90",
                                               "4: 60 100", "4: 42 90", "4: B0", "5: 60 100", "5: 42 90"));
}

TEST(RenderPart, DrumsSoonBehindAPartStaySoSoftThatTheyOnlyEndOthers)
{
    const MusicSequence sequence = piece(12, 120.0);
    RenderPart part;
    part.endBeats = 1.0;
    EXPECT_EQ(eraseNotesOutside(part, sequence), noErr);
    EXPECT_THAT(linesOf(sequence),
                ElementsAre("0: 60 100", "0: 42 90", "0: B0", "1: 42 1", "2: 42 1", "3: 42 1", "4: B0",
                            "4: 42 1", "5: 42 1", "6: 42 1", "7: 42 1", "8: B0", "8: 42 1"));
}

TEST(RenderPart, APieceIsCutWhereNoNoteHangsOnOthers)
{
    const auto cut = [](double from, double to, int end) {
        const MusicSequence sequence = piece(60, 120.0);
        MusicTrack track;
        EXPECT_EQ(MusicSequenceGetIndTrack(sequence, 0, track), noErr);
        EXPECT_EQ(MusicTrackNewMIDIChannelEvent(track, from, {0xB3, 66, 64}), noErr);
        EXPECT_EQ(MusicTrackNewMIDIChannelEvent(track, to, {0xB3, static_cast<std::uint8_t>(end), 63}),
                  noErr);
        return std::lround(cutIntoParts(sequence, 2).at(1).beginBeats);
    };
    EXPECT_EQ(cut(40.0, 41.0, 66), 30);
    EXPECT_EQ(cut(10.0, 20.0, 66), 30);
    EXPECT_EQ(cut(10.0, 33.5, 66), 34);
    EXPECT_EQ(cut(10.0, 34.0, 121), 34);
    EXPECT_EQ(cut(10.0, 33.5, 64), 30);
    for (const int binding : {65, 68}) {
        const MusicSequence sequence = piece(60, 120.0);
        MusicTrack track;
        EXPECT_EQ(MusicSequenceGetIndTrack(sequence, 0, track), noErr);
        const auto number = static_cast<std::uint8_t>(binding);
        EXPECT_EQ(MusicTrackNewMIDIChannelEvent(track, 10.0, {0xB3, number, 64}), noErr);
        EXPECT_EQ(MusicTrackNewMIDIChannelEvent(track, 35.0, {0xB3, number, 63}), noErr);
        EXPECT_EQ(std::lround(cutIntoParts(sequence, 2).at(1).beginBeats), 35);
    }
    EXPECT_EQ(cut(30.0, 62.0, 66), 62);
    EXPECT_EQ(cut(30.0, 64.0, 66), 32);
}

MusicSequence pieceOf(const std::vector<std::pair<double, MIDINoteMessage>>& notes, int pedal)
{
    MusicSequence sequence;
    MusicTrack track;
    EXPECT_EQ(NewMusicSequence(sequence), noErr);
    EXPECT_EQ(MusicSequenceNewTrack(sequence, track), noErr);
    if (pedal != 0) {
        EXPECT_EQ(MusicTrackNewMIDIChannelEvent(track, 0.0, {0xB0, static_cast<std::uint8_t>(pedal), 64}),
                  noErr);
    }
    for (const auto& [position, note] : notes) {
        EXPECT_EQ(MusicTrackNewMIDINoteEvent(track, position, note), noErr);
    }
    return sequence;
}

TEST(RenderPart, AKeyThatSoundsOnIsStruckSoftlyWhereItIsStruckAnew)
{
    RenderPart part;
    part.beginBeats = 1.0;
    part.endBeats = 4.0;
    const std::vector<std::pair<double, MIDINoteMessage>> notes{
        {0.0, {0, 61, 90, 0, 8.0F}}, {2.0, {0, 60, 100, 0, 2.5F}}, {2.0, {0, 62, 100, 0, 2.0F}},
        {5.0, {0, 60, 99, 0, 1.0F}}, {5.0, {0, 61, 99, 0, 1.0F}},  {5.0, {0, 62, 99, 0, 1.0F}},
        {6.0, {0, 60, 98, 0, 1.0F}}, {6.0, {0, 62, 98, 0, 1.0F}}};
    const MusicSequence plain = pieceOf(notes, 0);
    EXPECT_EQ(eraseNotesOutside(part, plain), noErr);
    EXPECT_THAT(linesOf(plain), ElementsAre("2: 60 100", "2: 62 100", "5: 60 1"));
    for (const int pedal : {64, 66, 69}) {
        const MusicSequence pedalled = pieceOf(notes, pedal);
        EXPECT_EQ(eraseNotesOutside(part, pedalled), noErr);
        EXPECT_THAT(linesOf(pedalled), ElementsAre("0: B0", "2: 60 100", "2: 62 100", "5: 60 1", "5: 62 1"));
    }
}

TEST(RenderPart, APieceLongerThanADayIsToldByItsEndAndCutThere)
{
    MusicSequence sequence = piece(1, 120.0);
    MusicTrack track;
    EXPECT_EQ(MusicSequenceGetIndTrack(sequence, 0, track), noErr);
    constexpr double day = 24.0 * 3600.0 * 2.0; // beats
    EXPECT_EQ(MusicTrackNewMIDINoteEvent(track, day - 1.0, {0, 60, 100, 0, 1.0F}), noErr);
    EXPECT_EQ(cutIntoParts(sequence, 1).back().endBlock, RenderPart::longestPiece);
    EXPECT_THAT(cutIntoParts(sequence, 2), SizeIs(288));
    for (const double beat : {day, 1.0e13, 1.0e300}) {
        EXPECT_EQ(MusicTrackNewMIDINoteEvent(track, beat, {0, 60, 100, 0, 1.0F}), noErr);
        EXPECT_GT(cutIntoParts(sequence, 1).back().endBlock, RenderPart::longestPiece);
        EXPECT_LT(cutIntoParts(sequence, 1).back().endBlock, RenderPart::longestPiece + 100);
        EXPECT_LE(cutIntoParts(sequence, 2).size(), 290U);
    }
}

TEST(RenderPart, ASequenceThatIsNotThereHasNoParts)
{
    EXPECT_THAT(cutIntoParts(nullptr, 2), IsEmpty());
}

} // namespace volvelle::test
