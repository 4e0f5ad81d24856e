#include "base/Checked.h"
#include "phrases/MIDIPhrase.h"
#include "tests/phrases/DrawScript.h"
#include "tests/phrases/PhraseMaking.h"

namespace volvelle {
namespace {

using namespace test;

class MIDIPhraseGeneratingTest : public testing::Test {
protected:
    PolyRhythmStepEvent& addStep(int instance, double position, int note, int velocity)
    {
        auto step = std::make_shared<PolyRhythmStepEvent>();
        step->position = position;
        step->duration = 1.24;
        step->note = static_cast<std::uint8_t>(note);
        step->velocity = velocity;
        phrase->polyRhythmicStepGenerator->instances[static_cast<std::size_t>(instance)]->steps.push_back(
            step);
        return *step;
    }

    void clearRhythms()
    {
        for (const auto& instance : phrase->polyRhythmicStepGenerator->instances) {
            instance->steps.clear();
        }
    }

    std::shared_ptr<MIDIPhrase> phrase = MIDIPhrase::make();
};

using MIDIPhraseGeneratingDeathTest = MIDIPhraseGeneratingTest;

TEST_F(MIDIPhraseGeneratingTest, APolyMetricPhraseIsDrawnOnTheGivenChannel)
{
    const DrawScript script = DrawScript().metricCycle();
    ScriptedRandomSource source(script.numbers);
    phrase->channel = 3;
    const auto notes = phrase->generateRandomPhrase_PolyMetric(14, 64);
    EXPECT_EQ(source.ranges, script.ranges);
    EXPECT_EQ(notes, phrase->loadedEvents);
    EXPECT_EQ(numbersOf(notes), std::vector<int>(64, 60));
    EXPECT_EQ(listOf(notes, &PhraseEvent::channel), std::vector<int>(64, 14));
    EXPECT_EQ(listOf(notes, &PhraseEvent::value), std::vector<int>(64, 100));
}

TEST_F(MIDIPhraseGeneratingTest, ACycleWithoutANoteIsDrawnAgain)
{
    DrawScript script;
    script.draw(1, 1, 16).draw(0, 0, 5).draw(50, 20, 120).draw(0, -1, 1);
    script.draw(2, 1, 16).draw(2, 0, 5).draw(0, -1, 1).draw(2, 0, 5).draw(1, -1, 1);
    script.metricCycle();
    ScriptedRandomSource source(script.numbers);
    EXPECT_EQ(phrase->generateRandomPhrase_PolyMetric(14, 64).size(), 64U);
    EXPECT_EQ(source.ranges, script.ranges);
}

TEST_F(MIDIPhraseGeneratingTest, AnUpdateKeepsTheStepsAndTakesTheTracksChannel)
{
    ScriptedRandomSource source({});
    phrase->channel = 9;
    phrase->polyMetricStepGenerator->steps = cycleOf({"1", "2", "-"});
    phrase->updateEvents_PolyMeter();
    const auto first = phrase->loadedEvents;
    EXPECT_EQ(first.size(), 43U);
    EXPECT_EQ(listOf(first, &PhraseEvent::channel), std::vector<int>(43, 9));
    phrase->updateEvents_PolyMeter();
    EXPECT_NE(phrase->loadedEvents, first);
    EXPECT_EQ(numbersOf(phrase->loadedEvents), numbersOf(first));
    EXPECT_EQ(positionsOf(phrase->loadedEvents), positionsOf(first));
    EXPECT_EQ(listOf(phrase->loadedEvents, &PhraseEvent::duration), listOf(first, &PhraseEvent::duration));
    EXPECT_EQ(listOf(phrase->loadedEvents, &PhraseEvent::id), listOf(first, &PhraseEvent::id));
    EXPECT_TRUE(source.ranges.empty());
}

TEST_F(MIDIPhraseGeneratingTest, AnUpdateOfAFreshDrawGivesTheDrawnNotes)
{
    SeededRandomSource source(21);
    const auto drawn = phrase->generateRandomPhrase_PolyMetric(0, 64);
    phrase->updateEvents_PolyMeter();
    EXPECT_EQ(numbersOf(phrase->loadedEvents), numbersOf(drawn));
    EXPECT_EQ(positionsOf(phrase->loadedEvents), positionsOf(drawn));
}

TEST_F(MIDIPhraseGeneratingTest, AnUpdateOfASilentCycleDrawsANewOne)
{
    const DrawScript script = DrawScript().metricCycle();
    ScriptedRandomSource source(script.numbers);
    phrase->channel = 9;
    phrase->polyMetricStepGenerator->steps = cycleOf({"-", "#"});
    phrase->updateEvents_PolyMeter(8);
    EXPECT_EQ(source.ranges, script.ranges);
    EXPECT_EQ(listOf(phrase->loadedEvents, &PhraseEvent::channel), std::vector<int>(8, 9));
    EXPECT_EQ(phrase->polyMetricStepGenerator->steps.size(), 1U);
}

TEST_F(MIDIPhraseGeneratingTest, TheRhythmsBarPlaysFourTimes)
{
    clearRhythms();
    addStep(2, 0.5, 41, 77);
    phrase->channel = 10;
    phrase->updateEvents_PolyRhythm();
    EXPECT_EQ(positionsOf(phrase->loadedEvents), (std::vector<double>{0.5, 4.5, 8.5, 12.5}));
    EXPECT_EQ(listOf(phrase->loadedEvents, &PhraseEvent::id), (std::vector<int>{0, 1, 2, 3}));
    for (const auto& event : phrase->loadedEvents) {
        EXPECT_EQ(event->type, PhraseEvent::noteOn);
        EXPECT_EQ(event->channel, 10);
        EXPECT_EQ(event->number, 41);
        EXPECT_EQ(event->duration, 1.24);
        EXPECT_EQ(event->value, 77);
        EXPECT_EQ(event->value2, 0);
    }
}

TEST_F(MIDIPhraseGeneratingTest, RhythmsAreSortedAndTheirIdsTellTheOrderOfTheirMaking)
{
    clearRhythms();
    addStep(0, 2.0, 40, 50);
    addStep(0, 3.0, 44, 0);
    addStep(1, 1.0, 41, 50);
    addStep(7, 2.0, 42, 50);
    phrase->updateEvents_PolyRhythm();
    EXPECT_EQ(numbersOf(phrase->loadedEvents),
              (std::vector<int>{41, 40, 42, 41, 40, 42, 41, 40, 42, 41, 40, 42}));
    EXPECT_EQ(listOf(phrase->loadedEvents, &PhraseEvent::id),
              (std::vector<int>{1, 0, 2, 4, 3, 5, 7, 6, 8, 10, 9, 11}));
}

TEST_F(MIDIPhraseGeneratingTest, OnlySilentRhythmsLeaveNothingAndDrawNothing)
{
    ScriptedRandomSource source({});
    clearRhythms();
    addStep(0, 2.0, 40, 0);
    phrase->loadedEvents = {noteAt(0.0, 60)};
    phrase->updateEvents_PolyRhythm();
    EXPECT_TRUE(phrase->loadedEvents.empty());
    EXPECT_TRUE(source.ranges.empty());
}

TEST_F(MIDIPhraseGeneratingTest, ANegativeInstanceDrawsAllEight)
{
    const DrawScript script = DrawScript().rhythms();
    ScriptedRandomSource source(script.numbers);
    EXPECT_TRUE(phrase->generateRandomPhrase_PolyRhythmic(-1).empty());
    EXPECT_EQ(source.ranges, script.ranges);
}

TEST_F(MIDIPhraseGeneratingTest, AnInstanceIsDrawnAlone)
{
    clearRhythms();
    DrawScript script;
    script.draw(1, 1, 16).draw(50, 36, 60).draw(0, 0, 3).draw(99, 20, 120);
    ScriptedRandomSource source(script.numbers);
    const auto events = phrase->generateRandomPhrase_PolyRhythmic(3);
    EXPECT_EQ(source.ranges, script.ranges);
    EXPECT_EQ(events, phrase->loadedEvents);
    EXPECT_EQ(numbersOf(events), std::vector<int>(4, 50));
}

TEST_F(MIDIPhraseGeneratingTest, AnInstanceOutOfRangeDrawsNothingAndIsUpdated)
{
    clearRhythms();
    addStep(0, 0.0, 40, 50);
    ScriptedRandomSource source({});
    EXPECT_EQ(phrase->generateRandomPhrase_PolyRhythmic(8).size(), 4U);
    EXPECT_TRUE(source.ranges.empty());
}

TEST_F(MIDIPhraseGeneratingTest, TheBareRandomPhraseGivesNothingAndChangesNothing)
{
    ScriptedRandomSource source({});
    const PhraseEvents events{noteAt(0.0, 60)};
    phrase->loadedEvents = events;
    EXPECT_TRUE(phrase->generateRandomPhrase(3).empty());
    EXPECT_EQ(phrase->loadedEvents, events);
    EXPECT_TRUE(source.ranges.empty());
}

TEST_F(MIDIPhraseGeneratingDeathTest, StepsThatCanNeverGiveANoteStop)
{
    EXPECT_DEATH(phrase->generateRandomPhrase_PolyMetric(14, 0), onlyLine(endlessMessage));
    EXPECT_DEATH(phrase->updateEvents_PolyMeter(0), onlyLine(endlessMessage));
    EXPECT_DEATH(phrase->generateRandomPhrase_PolyMetric(14, -1), onlyLine(rangeMessage));
    EXPECT_DEATH(phrase->updateEvents_PolyMeter(-1), onlyLine(rangeMessage));
}

TEST_F(MIDIPhraseGeneratingDeathTest, AChannelOrAVelocityThatIsNoByteStops)
{
    EXPECT_DEATH(phrase->generateRandomPhrase_PolyMetric(256, 64), onlyLine(conversionMessage));
    EXPECT_DEATH(phrase->generateRandomPhrase_PolyMetric(-1, 64), onlyLine(conversionMessage));
    clearRhythms();
    auto& step = addStep(0, 0.0, 40, 256);
    EXPECT_DEATH(phrase->updateEvents_PolyRhythm(), onlyLine(conversionMessage));
    step.velocity = -1;
    EXPECT_DEATH(phrase->updateEvents_PolyRhythm(), onlyLine(conversionMessage));
    step.velocity = 100;
    phrase->channel = 256;
    EXPECT_DEATH(phrase->updateEvents_PolyRhythm(), onlyLine(conversionMessage));
    EXPECT_DEATH(phrase->updateEvents_PolyMeter(), onlyLine(conversionMessage));
}

} // namespace
} // namespace volvelle
