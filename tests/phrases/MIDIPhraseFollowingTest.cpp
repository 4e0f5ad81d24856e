#include "base/Checked.h"
#include "tests/phrases/PhraseMaking.h"
#include "tests/phrases/Probes.h"
#include "tests/support/ConsoleCapture.h"

namespace volvelle {
namespace {

using namespace test;
using Numbers = std::vector<int>;

class MIDIPhraseFollowingTest : public testing::Test {
protected:
    // What the loaded notes become on the chords.
    Numbers followed(const PhraseEvents& notes, const std::vector<std::pair<double, std::string>>& chords)
    {
        phrase->loadedEvents = notes;
        phrase->transposeTrackNotes(*chordTrackOf(chords));
        return numbersOf(phrase->generatedEvents);
    }

    std::shared_ptr<MIDIPhrase> phrase = MIDIPhrase::make();
};

using MIDIPhraseFollowingDeathTest = MIDIPhraseFollowingTest;

TEST_F(MIDIPhraseFollowingTest, NotesMoveUpToTheNextChordTone)
{
    EXPECT_EQ(followed({noteAt(0.0, 61), noteAt(1.0, 60), noteAt(2.0, 66), noteAt(3.0, 68)}, {{0.0, "CM"}}),
              (Numbers{64, 60, 67, 72}));
}

TEST_F(MIDIPhraseFollowingTest, NotesOfOnePositionTakeDifferentTones)
{
    EXPECT_EQ(followed({noteAt(1.0, 60), noteAt(1.0, 61)}, {{0.0, "CM"}}), (Numbers{60, 64}));
    EXPECT_EQ(followed({noteAt(1.0, 61), noteAt(1.0, 60)}, {{0.0, "CM"}}), (Numbers{64, 60}));
    EXPECT_EQ(followed({noteAt(1.0, 60), noteAt(1.0, 60)}, {{0.0, "CM"}}), (Numbers{60, 64}));
}

TEST_F(MIDIPhraseFollowingTest, NotesOfDifferentPositionsMayTakeOneTone)
{
    EXPECT_EQ(followed({noteAt(1.0, 60), noteAt(1.25, 60)}, {{0.0, "CM"}}), (Numbers{60, 60}));
}

TEST_F(MIDIPhraseFollowingTest, ARuleOfOneToneSendsNotesToItsNextOctaves)
{
    EXPECT_EQ(followed({noteAt(0.0, 61), noteAt(0.0, 62), noteAt(1.0, 50)}, {{0.0, "C8"}}),
              (Numbers{72, 84, 60}));
}

TEST_F(MIDIPhraseFollowingTest, ASearchThatPassesTheTopGoesOnAtTheBottom)
{
    EXPECT_EQ(followed({noteAt(0.0, 125), noteAt(1.0, 127), noteAt(2.0, 120)}, {{0.0, "C8"}}),
              (Numbers{0, 0, 120}));
}

TEST_F(MIDIPhraseFollowingTest, ANumberAboveTheKeysStaysOnAToneAndElseReturnsToTheBottom)
{
    EXPECT_EQ(followed({noteAt(0.0, 132), noteAt(1.0, 133)}, {{0.0, "C8"}}), (Numbers{132, 0}));
}

TEST_F(MIDIPhraseFollowingTest, ANoteAtAChordsPositionBelongsToThatChord)
{
    EXPECT_EQ(followed({noteAt(3.9999, 60), noteAt(4.0, 60)}, {{0.0, "CM"}, {4.0, "GM"}}), (Numbers{60, 62}));
}

TEST_F(MIDIPhraseFollowingTest, NotesOutsideTheChordsAreLeftOut)
{
    EXPECT_EQ(
        followed({noteAt(1.75, 60), noteAt(2.0, 61), noteAt(15.75, 62), noteAt(16.0, 63), noteAt(17.0, 64)},
                 {{2.0, "C8"}}),
        (Numbers{72, 72}));
}

TEST_F(MIDIPhraseFollowingTest, WithoutChordsThePhraseIsSilent)
{
    phrase->generatedEvents = {noteAt(0.0, 60)};
    EXPECT_EQ(followed({noteAt(0.0, 60)}, {}), Numbers{});
}

TEST_F(MIDIPhraseFollowingTest, OtherEventsAreLeftOut)
{
    EXPECT_EQ(followed({eventOf(2, 0.0, 60), eventOf(3, 0.0, 60), noteAt(0.0, 60)}, {{0.0, "CM"}}),
              Numbers{60});
}

TEST_F(MIDIPhraseFollowingTest, IdsStartAnewInEachStretch)
{
    followed({noteAt(0.0, 60), noteAt(1.0, 60), noteAt(4.0, 60), noteAt(8.0, 60)},
             {{0.0, "CM"}, {4.0, "FM"}});
    EXPECT_EQ(listOf(phrase->generatedEvents, &PhraseEvent::id), (Numbers{0, 1, 0, 1}));
}

TEST_F(MIDIPhraseFollowingTest, AMovedNoteKeepsAllButItsNumberAndItsId)
{
    const auto note = noteAt(1.25, 61, 0.495);
    note->id = 9;
    note->channel = 8;
    note->value = 77;
    note->value2 = 11;
    followed({note}, {{0.0, "CM"}});
    ASSERT_EQ(phrase->generatedEvents.size(), 1U);
    const PhraseEvent& moved = *phrase->generatedEvents[0];
    EXPECT_EQ(moved.id, 0);
    EXPECT_EQ(moved.type, PhraseEvent::noteOn);
    EXPECT_EQ(moved.channel, 8);
    EXPECT_EQ(moved.number, 64);
    EXPECT_EQ(moved.position, 1.25);
    EXPECT_EQ(moved.duration, 0.495);
    EXPECT_EQ(moved.value, 77);
    EXPECT_EQ(moved.value2, 11);
    EXPECT_EQ(note->number, 61);
    EXPECT_EQ(note->id, 9);
}

TEST_F(MIDIPhraseFollowingTest, FollowingTwiceGivesTheSameNotes)
{
    const PhraseEvents notes{noteAt(0.0, 61), noteAt(0.0, 63), noteAt(5.0, 61)};
    const auto once = followed(notes, {{0.0, "CM"}, {4.0, "FM"}});
    EXPECT_EQ(followed(notes, {{0.0, "CM"}, {4.0, "FM"}}), once);
    EXPECT_EQ(once, (Numbers{64, 67, 65}));
}

TEST_F(MIDIPhraseFollowingTest, TheDurationsOfTheChordsAreRefreshed)
{
    const auto chords = chordTrackOf({{0.0, "CM"}, {4.0, "FM"}});
    phrase->transposeTrackNotes(*chords);
    EXPECT_EQ(chords->chords[0]->duration, 4.0);
    EXPECT_EQ(chords->chords[1]->duration, 12.0);
}

TEST_F(MIDIPhraseFollowingTest, AStretchWithoutAChordIsAnError)
{
    ConsoleCapture console;
    phrase->loadedEvents = {noteAt(0.0, 60)};
    MIDIPhraseProbe::transposeNotesToChordOf(*phrase, *chordTrackOf({{0.0, "CM"}}), 0.0, 16.0, 1);
    EXPECT_EQ(console.take(), std::vector<std::string>{"Error: The index exceeds the master chords count."});
    EXPECT_TRUE(phrase->generatedEvents.empty());
}

TEST_F(MIDIPhraseFollowingTest, AToneIsFreeUntilAnEventPlaysItAtThatVeryPosition)
{
    phrase->generatedEvents = {noteAt(1.0, 64)};
    const auto rule = ruleNamed("CM");
    EXPECT_TRUE(MIDIPhraseProbe::transposeOf(*phrase, *rule, 60, 1.0));
    EXPECT_FALSE(MIDIPhraseProbe::transposeOf(*phrase, *rule, 64, 1.0));
    EXPECT_TRUE(MIDIPhraseProbe::transposeOf(*phrase, *rule, 64, 1.0000001));
    EXPECT_TRUE(MIDIPhraseProbe::transposeOf(*phrase, *rule, 76, 1.0));
    EXPECT_FALSE(MIDIPhraseProbe::transposeOf(*phrase, *rule, 61, 1.0));
}

TEST_F(MIDIPhraseFollowingTest, ANoteIsHeldWhateverItsTypeAndChannel)
{
    const auto other = eventOf(3, 2.0, 64);
    other->channel = 9;
    EXPECT_TRUE(MIDIPhraseProbe::hasNoteAtPositionOf(*phrase, {noteAt(1.0, 60), other}, 64, 2.0));
    EXPECT_FALSE(MIDIPhraseProbe::hasNoteAtPositionOf(*phrase, {noteAt(1.0, 60), other}, 60, 2.0));
    EXPECT_FALSE(MIDIPhraseProbe::hasNoteAtPositionOf(*phrase, {}, 60, 2.0));
}

TEST_F(MIDIPhraseFollowingDeathTest, ARuleWithoutTonesStops)
{
    const auto chords = MIDIChordPhrase::make();
    chords->chords = {chordAt(0.0, ruleOf({}))};
    phrase->loadedEvents = {noteAt(0.0, 60)};
    EXPECT_DEATH(phrase->transposeTrackNotes(*chords), onlyLine(endlessMessage));
}

TEST_F(MIDIPhraseFollowingDeathTest, AChordWithoutARuleStops)
{
    const auto chords = MIDIChordPhrase::make();
    chords->chords = {chordAt(0.0, nullptr)};
    phrase->transposeTrackNotes(*chords);
    EXPECT_TRUE(phrase->generatedEvents.empty());
    phrase->loadedEvents = {noteAt(0.0, 60)};
    EXPECT_DEATH(phrase->transposeTrackNotes(*chords), onlyLine(nilMessage));
}

TEST_F(MIDIPhraseFollowingDeathTest, OneNoteMoreThanTheRuleHasKeysStops)
{
    PhraseEvents notes;
    for (int i = 0; i < 11; ++i) {
        notes.push_back(noteAt(2.0, 60 + i));
    }
    EXPECT_EQ(followed(notes, {{0.0, "C8"}}), (Numbers{60, 72, 84, 96, 108, 120, 0, 12, 24, 36, 48}));
    notes.push_back(noteAt(2.0, 60));
    EXPECT_DEATH(followed(notes, {{0.0, "C8"}}), onlyLine(endlessMessage));
}

TEST_F(MIDIPhraseFollowingDeathTest, TheHigherPitchClassesHaveTenKeysOnly)
{
    PhraseEvents notes;
    for (int i = 0; i < 10; ++i) {
        notes.push_back(noteAt(2.0, 0));
    }
    EXPECT_EQ(followed(notes, {{0.0, "B8"}}), (Numbers{11, 23, 35, 47, 59, 71, 83, 95, 107, 119}));
    notes.push_back(noteAt(2.0, 0));
    EXPECT_DEATH(followed(notes, {{0.0, "B8"}}), onlyLine(endlessMessage));
}

} // namespace
} // namespace volvelle
