#include "phrases/PolyRhytmicStepGenerator.h"

#include "tests/phrases/DrawScript.h"

#include <gtest/gtest.h>

#include <set>

namespace volvelle {
namespace {

using test::DrawScript;
using test::ScriptedRandomSource;
using test::SeededRandomSource;

TEST(PolyRhythmStepEvent, ANewStepIsSilent)
{
    const PolyRhythmStepEvent step;
    EXPECT_EQ(step.index, -1);
    EXPECT_EQ(step.velocity, 0);
    EXPECT_EQ(step.position, 0.0);
    EXPECT_EQ(step.duration, 0.0);
    EXPECT_EQ(step.note, 60);
    EXPECT_TRUE(PolyRhythmStepEvents().steps.empty());
}

TEST(PolyRhythmicStepGenerator, EightInstancesAreDrawnInOrder)
{
    DrawScript script;
    for (int note = 36; note < 44; ++note) {
        script.draw(1, 1, 16).draw(note, 36, 60).draw(0, 0, 3).draw(20, 20, 120);
    }
    ScriptedRandomSource source(script.numbers);
    PolyRhythmicStepGenerator generator;
    EXPECT_EQ(source.ranges, script.ranges);
    ASSERT_EQ(generator.instances.size(), 8U);
    for (int instance = 0; instance < 8; ++instance) {
        ASSERT_EQ(generator.getSteps(instance).size(), 1U);
        EXPECT_EQ(generator.getSteps(instance)[0]->note, 36 + instance);
    }
}

class OneInstance : public testing::Test {
protected:
    // Draws instance 5 by the script.
    void drawn(const DrawScript& script)
    {
        ScriptedRandomSource source(script.numbers);
        generator.randomize(5);
        EXPECT_EQ(source.ranges, script.ranges);
        steps = generator.getSteps(5);
    }

    PolyRhythmicStepGenerator generator;
    std::vector<std::shared_ptr<PolyRhythmStepEvent>> steps;
};

TEST_F(OneInstance, ThreeStepsDivideTheBarByThree)
{
    DrawScript script;
    script.draw(3, 1, 16);
    script.draw(36, 36, 60).draw(0, 0, 3).draw(20, 20, 120);
    script.draw(48, 36, 60).draw(0, 0, 3).draw(70, 20, 120);
    script.draw(60, 36, 60).draw(0, 0, 3).draw(120, 20, 120);
    drawn(script);
    ASSERT_EQ(steps.size(), 3U);
    for (int i = 0; i < 3; ++i) {
        const auto& step = *steps[static_cast<std::size_t>(i)];
        EXPECT_EQ(step.index, i);
        EXPECT_EQ(step.note, 36 + 12 * i);
        EXPECT_EQ(step.velocity, 20 + 50 * i);
        EXPECT_DOUBLE_EQ(step.position, i * 4.0 / 3.0);
        EXPECT_DOUBLE_EQ(step.duration, 4.0 / 3.0 + 0.99);
    }
}

TEST_F(OneInstance, SixteenStepsLastAQuarterBeatAndNearlyOneMore)
{
    DrawScript script;
    script.draw(16, 1, 16);
    for (int note = 36; note < 52; ++note) {
        script.draw(note, 36, 60).draw(0, 0, 3).draw(50, 20, 120);
    }
    drawn(script);
    ASSERT_EQ(steps.size(), 16U);
    EXPECT_EQ(steps[15]->position, 3.75);
    EXPECT_DOUBLE_EQ(steps[15]->duration, 1.24);
}

TEST_F(OneInstance, ThreeOfFourStepsStaySilentAsTheyWereMade)
{
    DrawScript script;
    script.draw(3, 1, 16);
    for (int i = 1; i <= 3; ++i) {
        script.draw(40 + i, 36, 60).draw(i, 0, 3);
    }
    drawn(script);
    ASSERT_EQ(steps.size(), 3U);
    for (const auto& step : steps) {
        EXPECT_EQ(step->velocity, 0);
        EXPECT_EQ(step->position, 0.0);
        EXPECT_EQ(step->duration, 0.0);
        EXPECT_EQ(step->note, 60);
    }
}

TEST_F(OneInstance, ARepeatedNoteMakesNoStepButTakesItsTime)
{
    DrawScript script;
    script.draw(4, 1, 16);
    script.draw(36, 36, 60).draw(1, 0, 3);
    script.draw(36, 36, 60);
    script.draw(36, 36, 60);
    script.draw(37, 36, 60).draw(0, 0, 3).draw(99, 20, 120);
    drawn(script);
    ASSERT_EQ(steps.size(), 2U);
    EXPECT_EQ(steps[1]->index, 1);
    EXPECT_EQ(steps[1]->position, 3.0);
}

TEST_F(OneInstance, ANewDrawLeavesTheOthersAlone)
{
    const auto before = generator.getSteps(4);
    const auto own = generator.getSteps(5);
    drawn(DrawScript().silentInstance());
    EXPECT_EQ(generator.getSteps(4), before);
    EXPECT_NE(steps, own);
}

TEST_F(OneInstance, InstancesOutOfRangeDrawNothingAndHoldNothing)
{
    ScriptedRandomSource source({});
    for (const int instance : {-1, 8, 100}) {
        generator.randomize(instance);
        EXPECT_TRUE(generator.getSteps(instance).empty());
    }
    EXPECT_TRUE(source.ranges.empty());
}

TEST_F(OneInstance, NoNoteOccursTwice)
{
    SeededRandomSource source(4);
    for (int i = 0; i < 1000; ++i) {
        generator.randomize(5);
        std::multiset<int> notes;
        for (const auto& step : generator.getSteps(5)) {
            if (step->velocity > 0) {
                notes.insert(step->note);
                ASSERT_LT(step->position, 4.0);
            }
        }
        ASSERT_EQ(std::set<int>(notes.begin(), notes.end()).size(), notes.size());
        ASSERT_LE(generator.getSteps(5).size(), 16U);
        ASSERT_GE(generator.getSteps(5).size(), 1U);
    }
}

} // namespace
} // namespace volvelle
