#include "phrases/PolyMetricStepGenerator.h"

#include "tests/phrases/DrawScript.h"
#include "tests/phrases/PhraseMaking.h"

namespace volvelle {
namespace {

using test::DrawScript;
using test::ScriptedRandomSource;
using test::SeededRandomSource;

TEST(PolyMeterStepEvent, ANewStepTies)
{
    const PolyMeterStepEvent step;
    EXPECT_EQ(step.index, -1);
    EXPECT_EQ(step.type, "-");
    EXPECT_EQ(step.velocity, 0);
    EXPECT_EQ(step.octave, 0);
}

TEST(PolyMetricStepGenerator, ACycleIsDrawnStepByStep)
{
    DrawScript script;
    script.draw(6, 1, 16);
    script.draw(0, 0, 5).draw(20, 20, 120).draw(-1, -1, 1);
    script.draw(1, 0, 5).draw(120, 20, 120).draw(0, -1, 1);
    script.draw(2, 0, 5).draw(1, -1, 1);
    script.draw(3, 0, 5).draw(-12, -12, 12).draw(21, 20, 120).draw(0, -1, 1);
    script.draw(4, 0, 5).draw(0, -12, 12).draw(22, 20, 120).draw(0, -1, 1);
    script.draw(5, 0, 5).draw(12, -12, 12).draw(23, 20, 120).draw(0, -1, 1);
    ScriptedRandomSource source(script.numbers);
    const PolyMetricStepGenerator generator;
    EXPECT_EQ(source.ranges, script.ranges);

    const std::vector<std::string> types{"-", "0", "#", "-12", "0", "12"};
    const std::vector<int> velocities{20, 120, 0, 21, 22, 23};
    const std::vector<int> octaves{-1, 0, 1, 0, 0, 0};
    ASSERT_EQ(generator.steps.size(), types.size());
    for (std::size_t i = 0; i < types.size(); ++i) {
        EXPECT_EQ(generator.steps[i]->index, static_cast<int>(i));
        EXPECT_EQ(generator.steps[i]->type, types[i]);
        EXPECT_EQ(generator.steps[i]->velocity, velocities[i]);
        EXPECT_EQ(generator.steps[i]->octave, octaves[i]);
    }
}

TEST(PolyMetricStepGenerator, EveryCycleKeepsItsBounds)
{
    SeededRandomSource source(11);
    PolyMetricStepGenerator generator;
    for (int i = 0; i < 1000; ++i) {
        generator.randomize();
        ASSERT_GE(generator.steps.size(), 1U);
        ASSERT_LE(generator.steps.size(), 16U);
        for (std::size_t place = 0; place < generator.steps.size(); ++place) {
            const auto& step = *generator.steps[place];
            ASSERT_EQ(step.index, static_cast<int>(place));
            ASSERT_TRUE(step.type == "#" ? step.velocity == 0 : step.velocity >= 20 && step.velocity <= 120);
        }
    }
}

TEST(PolyMetricStepGenerator, StepsComeRoundAndRound)
{
    PolyMetricStepGenerator generator;
    generator.steps = test::cycleOf({"1", "2", "3"});
    std::string types;
    for (int i = 0; i < 7; ++i) {
        types += generator.nextStep()->type;
    }
    EXPECT_EQ(types, "1231231");
    EXPECT_EQ(generator.currentStep, 1);
}

TEST(PolyMetricStepGenerator, ACycleOfOneGivesTheSameStepEachTime)
{
    PolyMetricStepGenerator generator;
    generator.steps = test::cycleOf({"5"});
    for (int i = 0; i < 5; ++i) {
        EXPECT_EQ(generator.nextStep(), generator.steps[0]);
    }
}

TEST(PolyMetricStepGenerator, WithoutStepsEachStepIsANewTie)
{
    PolyMetricStepGenerator generator;
    generator.steps.clear();
    generator.currentStep = 3;
    const auto first = generator.nextStep();
    const auto second = generator.nextStep();
    EXPECT_EQ(first->type, "-");
    EXPECT_NE(first, second);
    EXPECT_EQ(generator.currentStep, 3);
}

TEST(PolyMetricStepGenerator, APositionBehindTheEndStartsOver)
{
    PolyMetricStepGenerator generator;
    generator.steps = test::cycleOf({"1", "2"});
    generator.currentStep = 9;
    EXPECT_EQ(generator.nextStep()->type, "1");
    EXPECT_EQ(generator.currentStep, 1);
}

TEST(PolyMetricStepGenerator, ResetAndRandomizeReturnToTheStart)
{
    PolyMetricStepGenerator generator;
    generator.currentStep = 5;
    const auto before = generator.steps;
    generator.reset();
    EXPECT_EQ(generator.currentStep, 0);
    EXPECT_EQ(generator.steps, before);
    generator.currentStep = 5;
    generator.randomize();
    EXPECT_EQ(generator.currentStep, 0);
    EXPECT_NE(generator.steps, before);
}

} // namespace
} // namespace volvelle
