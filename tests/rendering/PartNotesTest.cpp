#include "rendering/PartNotes.h"

#include "tests/rendering/BeatPiece.h"

#include <algorithm>
#include <array>
#include <cmath>
#include <gmock/gmock.h>
#include <set>
#include <string>
#include <utility>
#include <vector>

namespace volvelle::test {

namespace {

using testing::ElementsAre;

// "4: 60 100" for each note, and "4: B0" for each controller, in their order. Each note ends, as its begin
// has it; there are ends of earlier notes besides.
std::vector<std::string> linesOf(const SequencerEvents& events)
{
    std::vector<std::string> lines;
    std::multiset<std::array<double, 4>> begins; // seconds, end, channel and key
    std::multiset<std::array<double, 4>> ends;
    for (const SequencerEvent& event : events.events) {
        const std::string at = std::to_string(std::lround(events.tempo.beats(event.seconds))) + ": ";
        if (event.kind == SequencerEvent::noteOff) {
            ends.insert({event.partner, event.seconds, 1.0 * channelOf(event.bytes), 1.0 * event.bytes[1]});
        } else if (event.kind == SequencerEvent::noteOn) {
            begins.insert({event.seconds, event.partner, 1.0 * channelOf(event.bytes), 1.0 * event.bytes[1]});
            lines.push_back(at + std::to_string(event.bytes[1]) + " " + std::to_string(event.bytes[2]));
        } else if (event.kind == SequencerEvent::state) {
            lines.push_back(at + "B0");
        }
    }
    EXPECT_TRUE(std::ranges::includes(ends, begins));
    return lines;
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

} // namespace

TEST(PartNotes, APartKeepsItsOwnNotesAndAllElse)
{
    RenderPart part;
    part.beginBeats = 2.0;
    part.endBeats = 100.0;
    EXPECT_THAT(linesOf(notesOf(part, piece(6, 120.0))),
                ElementsAre("0: B0", "2: 60 100", "2: 42 90", "3: 60 100", "3: 42 90", "4: 60 100",
                            "4: 42 90", "4: B0", "5: 60 100", "5: 42 90"));
}

TEST(PartNotes, AStrikeThatChokesADrumWhichRingsStaysSoSoftThatItIsNotHeard)
{
    RenderPart part;
    part.endBeats = 1.0;
    EXPECT_THAT(linesOf(notesOf(part, piece(12, 120.0))),
                ElementsAre("0: 60 100", "0: 42 90", "0: B0", "1: 42 1", "4: B0", "8: B0"));
}

TEST(PartNotes, OnlyDrumsThatChokeEachOtherWithinEightBeatsDo)
{
    RenderPart part;
    part.endBeats = 20.0;
    const auto drum = [](int channel, int key) {
        return MIDINoteMessage{static_cast<std::uint8_t>(channel), static_cast<std::uint8_t>(key), 100, 0,
                               0.5F};
    };
    const auto struckAfter = [&](double before, MIDINoteMessage first, double after, MIDINoteMessage second) {
        const auto lines = linesOf(notesOf(part, eventsOf(pieceOf({{before, first}, {after, second}}, 0))));
        return lines.size() == 2 ? lines.back() : "none";
    };
    const int pairs[][2] = {{29, 30}, {30, 29}, {42, 46}, {44, 42}, {46, 44}, {46, 46}, {71, 72},
                            {73, 74}, {78, 79}, {80, 81}, {81, 80}, {86, 87}, {87, 86}};
    for (const auto& [ringing, choking] : pairs) {
        EXPECT_EQ(struckAfter(12.0, drum(9, ringing), 27.0, drum(9, choking)),
                  "27: " + std::to_string(choking) + " 1");
    }
    EXPECT_EQ(struckAfter(11.9, drum(9, 46), 27.0, drum(9, 42)), "none");
    EXPECT_EQ(struckAfter(12.0, drum(9, 46), 28.0, drum(9, 42)), "none");
    EXPECT_EQ(struckAfter(19.0, drum(9, 46), 20.0, drum(9, 80)), "none");
    EXPECT_EQ(struckAfter(19.0, drum(9, 38), 20.0, drum(9, 38)), "none");
    EXPECT_EQ(struckAfter(19.0, drum(8, 46), 20.0, drum(8, 42)), "none");
    EXPECT_EQ(struckAfter(19.0, drum(9, 46), 20.0, drum(9, 42)), "20: 42 1");
}

TEST(PartNotes, APartKeepsTheEndsOfItsOwnNotesAlone)
{
    RenderPart part;
    part.beginBeats = 2.0;
    part.endBeats = 4.0;
    const auto sequence = pieceOf({{0.0, {0, 60, 90, 0, 2.0F}},
                                   {1.0, {0, 61, 90, 0, 2.0F}},
                                   {2.0, {0, 62, 90, 0, 9.0F}},
                                   {4.0, {0, 63, 90, 0, 1.0F}}},
                                  0);
    std::vector<int> ended;
    for (const SequencerEvent& event : notesOf(part, eventsOf(sequence)).events) {
        if (event.kind == SequencerEvent::noteOff) {
            ended.push_back(event.bytes[1]);
        }
    }
    EXPECT_THAT(ended, ElementsAre(62));
}

TEST(PartNotes, OnlyTheProgramsOfItsNotesAreAskedFor)
{
    const auto sequence = pieceOf({{0.0, {1, 60, 90, 0, 1.0F}}, {4.0, {2, 60, 90, 0, 1.0F}}}, 0);
    RenderPart part;
    part.beginBeats = 4.0;
    part.endBeats = 8.0;
    const SequencerEvents piece = eventsOf(sequence);
    EXPECT_EQ(piece.programs.size(), 2U);
    const SequencerEvents notes = notesOf(part, piece);
    ASSERT_EQ(notes.programs.size(), 1U);
    EXPECT_EQ(notes.programs.front().channel, 2);
    EXPECT_EQ(notes.tracks.size(), piece.tracks.size());
}

} // namespace volvelle::test
