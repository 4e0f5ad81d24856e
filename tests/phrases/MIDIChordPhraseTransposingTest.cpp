#include "base/Checked.h"
#include "tests/phrases/DrawScript.h"
#include "tests/phrases/PhraseMaking.h"
#include "tests/phrases/Probes.h"
#include "tests/support/ConsoleCapture.h"

namespace volvelle {
namespace {

using namespace test;
using Lines = std::vector<std::string>;
using Numbers = std::vector<int>;
using Ranges = std::vector<std::pair<int, int>>;
using Probe = MIDIChordPhraseProbe;

constexpr int upward = 0;
constexpr int downward = 1;

class MIDIChordPhraseTransposingTest : public testing::Test {
protected:
    void master(const std::vector<std::pair<double, std::string>>& chords)
    {
        own = chordTrackOf(chords);
        own->isMasterTrack = true;
    }

    ConsoleCapture console;
    std::shared_ptr<MIDIChordPhrase> own;
};

using MIDIChordPhraseTransposingDeathTest = MIDIChordPhraseTransposingTest;

TEST_F(MIDIChordPhraseTransposingTest, ATracksChordsMoveOntoTheMasters)
{
    master({{0.0, "CM"}, {8.0, "GM"}});
    const auto track = chordTrackOf({{0.0, "Am"}, {4.0, "Am"}, {8.0, "CM"}});
    track->chords[1]->notes = {noteAt(4.0, 69, 2.0)};
    const auto before = track->chords[0]->nrule;
    ScriptedRandomSource source({upward, downward, upward});
    own->transposeTrackChords(*track);
    EXPECT_EQ(source.ranges, (Ranges{{0, 1}, {0, 1}, {0, 1}}));
    EXPECT_EQ(shortNamesOf(*track), (std::vector<std::string>{"CM (*)", "CM (*)", "GM (*)"}));
    EXPECT_EQ(track->chords[2]->nrule->longName, "G Major (*)");
    EXPECT_EQ(track->chords[0]->nrule->index, ruleNamed("CM")->index);
    EXPECT_EQ(track->chords[0]->nrule->inversion, 0);
    EXPECT_EQ(track->chords[0]->nrule->rule, (Numbers{0, 4, 12}));
    EXPECT_EQ(track->chords[1]->nrule->rule, (Numbers{0, 4, 7}));
    EXPECT_EQ(track->chords[2]->nrule->rule, (Numbers{2, 7, 11}));
    EXPECT_EQ(numbersOf(track->generatedEvents), (Numbers{60, 64, 72, 60, 64, 67, 62, 67, 71}));
    EXPECT_EQ(listOf(track->generatedEvents, &PhraseEvent::duration),
              (std::vector<double>{0.25, 0.25, 0.25, 2.0, 2.0, 2.0, 0.25, 0.25, 0.25}));
    EXPECT_EQ(before->rule, (Numbers{0, 4, 9}));
    EXPECT_EQ(before->shortName, "Am");
    EXPECT_EQ(console.take(), Lines{});
}

TEST_F(MIDIChordPhraseTransposingTest, TheMastersRuleStaysSorted)
{
    master({{0.0, "GM"}, {8.0, "Am"}});
    const auto track = chordTrackOf({{0.0, "CM"}});
    ScriptedRandomSource source({upward});
    own->transposeTrackChords(*track);
    EXPECT_EQ(own->chords[0]->nrule->rule, (Numbers{2, 7, 11}));
    EXPECT_EQ(own->chords[1]->nrule->rule, (Numbers{9, 0, 4}));
    EXPECT_EQ(own->chords[0]->duration, 8.0);
}

TEST_F(MIDIChordPhraseTransposingTest, ADownwardSearchMayEndNearTheTopAndIsFolded)
{
    master({{0.0, "GM"}});
    const auto track = chordTrackOf({{0.0, "C8"}});
    ScriptedRandomSource source({downward});
    own->transposeTrackChords(*track);
    EXPECT_EQ(track->chords[0]->nrule->rule, Numbers{122});
    EXPECT_EQ(numbersOf(track->generatedEvents), Numbers{55});
}

TEST_F(MIDIChordPhraseTransposingTest, ChordsBeforeTheMastersFirstAndBehindTheEndStay)
{
    master({{2.0, "GM"}});
    const auto track = chordTrackOf({{1.0, "CM"}, {2.0, "CM"}, {16.0, "CM"}});
    ScriptedRandomSource source({upward});
    own->transposeTrackChords(*track);
    EXPECT_EQ(shortNamesOf(*track), (std::vector<std::string>{"CM", "GM (*)", "CM"}));
    EXPECT_EQ(track->generatedEvents.size(), 9U);
}

TEST_F(MIDIChordPhraseTransposingTest, OnlyAMasterTransposes)
{
    const auto track = chordTrackOf({{0.0, "Am"}});
    chordTrackOf({{0.0, "CM"}})->transposeTrackChords(*track);
    EXPECT_EQ(console.take(), Lines{"Error: Only a master track can transpose other tracks."});
    EXPECT_EQ(shortNamesOf(*track), std::vector<std::string>{"Am"});
    EXPECT_TRUE(track->generatedEvents.empty());
}

TEST_F(MIDIChordPhraseTransposingTest, AStretchWithoutAMastersChordIsAnError)
{
    master({{0.0, "CM"}});
    const auto track = chordTrackOf({{0.0, "Am"}});
    Probe::transposeChordsOf(*own, 0.0, 16.0, *track, 1);
    EXPECT_EQ(console.take(), Lines{"Error: The index exceeds the master chords count."});
    EXPECT_EQ(shortNamesOf(*track), std::vector<std::string>{"Am"});
}

TEST_F(MIDIChordPhraseTransposingDeathTest, AChordWithoutARuleStops)
{
    master({{0.0, "CM"}});
    const auto track = chordTrackOf({{0.0, "CM"}});
    track->chords[0]->nrule = nullptr;
    EXPECT_DEATH(own->transposeTrackChords(*track), onlyLine(nilMessage));
    own->chords[0]->nrule = nullptr;
    EXPECT_DEATH(own->transposeTrackChords(*chordTrackOf({{0.0, "CM"}})), onlyLine(nilMessage));
}

} // namespace
} // namespace volvelle
