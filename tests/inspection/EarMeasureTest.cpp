#include "inspection/EarMeasure.h"

#include "base/Text.h"
#include "tests/support/ProjectFolders.h"

#include <gtest/gtest.h>

#include <fstream>
#include <map>
#include <regex>

namespace volvelle {
namespace {

std::shared_ptr<PhraseEvent> note(int channel, int number, double position, double duration)
{
    const auto event = std::make_shared<PhraseEvent>();
    event->type = PhraseEvent::noteOn;
    event->channel = static_cast<std::uint8_t>(channel);
    event->number = static_cast<std::uint8_t>(number);
    event->position = position;
    event->duration = duration;
    return event;
}

std::shared_ptr<ChordEvent> chordOfC(double position)
{
    const auto chord = std::make_shared<ChordEvent>();
    chord->position = position;
    chord->nrule = std::make_shared<ChordRule>();
    chord->nrule->rule = {0, 4, 7};
    return chord;
}

class EarMeasureTest : public testing::Test {
protected:
    EarMeasureTest() { generator.makeArrangement(true); }

    std::map<std::string, double> measured()
    {
        generator.phraseMixer->mixChannels();
        EarMeasure measure;
        measure.add(generator);
        std::map<std::string, double> values;
        for (const auto& row : measure.table()) {
            values[row.name] = row.value;
        }
        return values;
    }

    MIDIClipGenerator generator;
};

TEST_F(EarMeasureTest, TheDocumentNamesEachRowWithItsBoundsInOrder)
{
    EarMeasure measure;
    generator.phraseMixer->mixChannels();
    measure.add(generator);
    std::vector<std::string> rows;
    for (const EarMeasure::Row& row : measure.table()) {
        rows.push_back(concat(row.name, ": ", row.least, " to ", row.most));
    }

    std::ifstream document(test::sourceFolder() / "docs/ear.md");
    const std::regex line(R"(\| (.*?)(?: \([a-z -]+\))? \| [0-9.]+ \| ([0-9.]+ to [0-9.]+) \|)");
    std::vector<std::string> told;
    std::smatch parts;
    for (std::string text; std::getline(document, text);) {
        if (std::regex_match(text, parts, line)) {
            told.push_back(concat(parts[1].str(), ": ", parts[2].str()));
        }
    }
    EXPECT_EQ(told, rows);
}

TEST_F(EarMeasureTest, NotesAreCountedByChannelAndBeat)
{
    generator.phraseMixer->leadTrack0->generatedEvents = {note(2, 60, 0, 1), note(2, 64, 4, 1)};
    generator.phraseMixer->drumTrack0->loadedEvents = {note(9, 36, 0, 0.25)};
    const auto values = measured();
    EXPECT_EQ(values.at("notes per beat, channel 3"), 2.0 / 16.0);
    EXPECT_EQ(values.at("notes per beat, channel 10"), 1.0 / 16.0);
    EXPECT_EQ(values.at("notes per beat, all"), 3.0 / 16.0);
}

TEST_F(EarMeasureTest, VoicesAreCountedOnTheGridWithoutDrums)
{
    generator.phraseMixer->leadTrack0->generatedEvents = {note(2, 60, 0, 8), note(2, 64, 0, 4)};
    generator.phraseMixer->drumTrack0->loadedEvents = {note(9, 36, 0, 16)};
    const auto values = measured();
    EXPECT_EQ(values.at("voices at once without drums, mean"), (32.0 + 16.0) / 64.0);
    EXPECT_EQ(values.at("voices at once without drums, 95th percentile"), 2.0);
}

TEST_F(EarMeasureTest, EightOnsetsOnOneSixteenthAreACrowd)
{
    for (int i = 0; i < 8; ++i) {
        generator.phraseMixer->leadTrack0->generatedEvents.push_back(note(2, 60 + i, 1.0, 0.25));
    }
    generator.phraseMixer->bassTrack0->generatedEvents = {note(8, 30, 2.0, 1)};
    EXPECT_EQ(measured().at("share of sixteenths with 8 or more onsets"), 1.0 / 64.0);
}

TEST_F(EarMeasureTest, TheBassIsHeldAgainstChordsBarsAndVoices)
{
    generator.phraseMixer->chordTrack->chords = {chordOfC(0.0)};
    generator.phraseMixer->bassTrack0->generatedEvents = {note(8, 36, 0, 1), note(8, 40, 1.5, 1),
                                                          note(8, 43, 8, 1)};
    generator.phraseMixer->leadTrack0->generatedEvents = {note(2, 60, 0, 1), note(2, 72, 0, 1)};
    const auto values = measured();
    EXPECT_DOUBLE_EQ(values.at("share of bass notes on a root"), 1.0 / 3.0);
    EXPECT_EQ(values.at("share of first beats with a bass note"), 0.5);
    EXPECT_EQ(values.at("share of bass notes below all other pitched voices"), 1.0);
    EXPECT_EQ(values.at("semitones from bass to the lowest other voice, mean"), 24.0);
    EXPECT_EQ(values.at("share of arrangements without a chord"), 0.0);
}

TEST_F(EarMeasureTest, RepeatsOfALeadAreCountedByStepAndNotWithinAChord)
{
    generator.phraseMixer->leadTrack0->generatedEvents = {
        note(2, 60, 0, 1), note(2, 60, 1, 1), note(2, 64, 2, 1), note(2, 67, 2, 1), note(2, 64, 3, 1)};
    EXPECT_DOUBLE_EQ(measured().at("share of lead steps that repeat the key"), 1.0 / 3.0);
}

TEST_F(EarMeasureTest, SilenceIsMeasuredBeforeBetweenAndBehindAllTracksButTheChords)
{
    generator.phraseMixer->leadTrack0->generatedEvents = {note(2, 60, 1, 5), note(2, 60, 3, 1),
                                                          note(2, 60, 9, 6)};
    generator.phraseMixer->chordTrack->generatedEvents = {note(0, 60, 0, 16)};
    const auto values = measured();
    EXPECT_EQ(values.at("longest silence in an arrangement without chords in beats, least"), 3.0);
    EXPECT_EQ(values.at("longest silence in an arrangement without chords in beats, most"), 3.0);
    EXPECT_EQ(values.at("share of arrangements without a chord"), 1.0);
}

TEST_F(EarMeasureTest, ANoteOfTheBassAboveAnotherVoiceIsCounted)
{
    generator.phraseMixer->bassTrack0->generatedEvents = {note(8, 60, 0, 1), note(8, 40, 4, 1)};
    generator.phraseMixer->leadTrack0->generatedEvents = {note(2, 50, 0, 1)};
    EXPECT_EQ(measured().at("share of bass notes below all other pitched voices"), 0.5);
}

TEST_F(EarMeasureTest, IdeasAreCountedByTheirFaults)
{
    const auto values = measured();
    EXPECT_EQ(values.at("share of ideas: four kicks"), 0.0);
    EXPECT_EQ(values.at("share of ideas: three distinct chords, none for more than 8 beats"), 0.0);
    EXPECT_EQ(values.at("share of ideas: the lead repeats its key in 30 % of its steps at most"), 1.0);
    EXPECT_EQ(values.at("share of ideas without a fault"), 0.0);
    EXPECT_EQ(values.at("share of ideas with one fault at most"), 0.0);
    EXPECT_EQ(values.at("press at which a phrase comes back, median"), 1000.0);
}

TEST_F(EarMeasureTest, PhrasesThatComeBackAreCountedByTheirFolders)
{
    EarMeasure measure;
    for (const char* const name : {"a/1", "a/2", "a/1", "a/3"}) {
        generator.makeArrangement(true);
        generator.phraseMixer->leadTrack0->currentURL = name;
        measure.add(generator);
    }
    EXPECT_EQ(measure.table().back().name, "press at which a phrase comes back, median");
    EXPECT_EQ(measure.table().back().value, 4.0);
}

} // namespace
} // namespace volvelle
