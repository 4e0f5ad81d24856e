#include "inspection/ArrangementSummary.h"

#include <gtest/gtest.h>

namespace volvelle {
namespace {

using Lines = std::vector<std::string>;

class ArrangementSummaryTest : public testing::Test {
protected:
    ArrangementSummaryTest() { generator.makeArrangement(true); }

    MIDIPhraseMixer& mixer() { return *generator.phraseMixer; }

    MIDIClipGenerator generator;
};

std::shared_ptr<PhraseEvent> event(int type, int channel)
{
    const auto made = std::make_shared<PhraseEvent>();
    made->type = type;
    made->channel = static_cast<std::uint8_t>(channel);
    return made;
}

TEST_F(ArrangementSummaryTest, PhrasesFromFilesHaveTheirLabelsAndTheNamesOfTheirFiles)
{
    mixer().leadTrack0->currentURL = "/library/007.mid";
    Lines lines;
    for (const auto& phrase : summaryOf(generator).phrases) {
        lines.push_back(phrase.label + ": " + phrase.title);
    }
    EXPECT_EQ(lines, (Lines{"CHORDS: ", "CHORD PHRASE: ", "MELODY PHRASE: 007.mid",
                            "BASS PHRASE: ", "BASE DRUMS: "}));
}

TEST_F(ArrangementSummaryTest, ATrackNameIsTheTitle)
{
    const auto sequence = std::make_shared<MIDISequence16>();
    sequence->sequenceNode = std::make_shared<SequenceNode>(std::uint16_t{2});
    sequence->sequenceNode->tracks.at(1)->addEvent(std::make_shared<MetaTrackNameEvent>(0.0, "Slow rain"));
    mixer().bassTrack0->sequence = sequence;
    mixer().bassTrack0->currentURL = "/library/003.mid";
    EXPECT_EQ(summaryOf(generator).phrases.at(3).title, "Slow rain");
}

TEST_F(ArrangementSummaryTest, ChordsHaveTheirPositionsAndShortNames)
{
    const auto chord = std::make_shared<ChordEvent>();
    chord->position = 4.0;
    chord->nrule = std::make_shared<ChordRule>();
    chord->nrule->shortName = "Am7";
    mixer().chordTrack->chords = {chord};
    const auto summary = summaryOf(generator);
    ASSERT_EQ(summary.chords.size(), 1U);
    EXPECT_EQ(summary.chords[0].position, 4.0);
    EXPECT_EQ(summary.chords[0].name, "Am7");
}

TEST_F(ArrangementSummaryTest, NotesThatAreMixedAreCountedByChannel)
{
    mixer().mixedEvents = {event(PhraseEvent::noteOn, 2), event(PhraseEvent::noteOn, 2),
                           event(PhraseEvent::noteOn, 9), event(PhraseEvent::controller, 9)};
    std::array<int, channelCount> counts{};
    counts[2] = 2;
    counts[9] = 1;
    EXPECT_EQ(summaryOf(generator).notes, counts);
}

TEST(ArrangementSummaryDeathTest, WithoutAnArrangementIsAFatalStop)
{
    MIDIClipGenerator generator;
    EXPECT_DEATH(summaryOf(generator), "Unexpectedly found nil");
}

} // namespace
} // namespace volvelle
