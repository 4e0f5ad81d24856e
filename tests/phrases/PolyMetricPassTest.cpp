#include "phrases/PolyMetricPass.h"

#include "base/Checked.h"
#include "tests/phrases/PhraseMaking.h"

namespace volvelle {
namespace {

using namespace test;

class PolyMetricPassTest : public testing::Test {
protected:
    PhraseEvents run(const std::vector<std::string>& types, int steps = 64, int velocity = 90)
    {
        generator.steps = cycleOf(types, velocity);
        return PolyMetricPass(generator, 14).run(steps);
    }

    // The number that a step's text gives.
    int numberOf(const std::string& type) { return run({type}, 1).front()->number; }

    PolyMetricStepGenerator generator;
};

using PolyMetricPassDeathTest = PolyMetricPassTest;

TEST_F(PolyMetricPassTest, ANoteIsTiedOnAndEndedByARest)
{
    const auto notes = run({"0", "-", "-", "#"});
    ASSERT_EQ(notes.size(), 16U);
    for (std::size_t i = 0; i < notes.size(); ++i) {
        EXPECT_EQ(notes[i]->position, static_cast<double>(i));
        EXPECT_EQ(notes[i]->number, 60);
        EXPECT_EQ(notes[i]->id, static_cast<int>(3 * i)); // a second off stands before each further note
    }
    EXPECT_DOUBLE_EQ(notes[0]->duration, 0.7425);
    EXPECT_NEAR(notes[15]->duration, 0.5925, 1e-12);
}

TEST_F(PolyMetricPassTest, ANoteCarriesTheStepsVelocityAndThePassesChannel)
{
    const auto notes = run({"-7"}, 1);
    ASSERT_EQ(notes.size(), 1U);
    EXPECT_EQ(notes[0]->id, 0);
    EXPECT_EQ(notes[0]->type, PhraseEvent::noteOn);
    EXPECT_EQ(notes[0]->channel, 14);
    EXPECT_EQ(notes[0]->number, 53);
    EXPECT_EQ(notes[0]->value, 90);
    EXPECT_EQ(notes[0]->value2, 0);
    EXPECT_EQ(notes[0]->duration, 0.2475);
}

TEST_F(PolyMetricPassTest, NothingSoundsBeforeTheFirstNote)
{
    for (const char* silent : {"-", "#"}) {
        const auto notes = run({silent, silent, "3", "-"}, 4);
        ASSERT_EQ(notes.size(), 1U);
        EXPECT_EQ(notes[0]->position, 0.5);
        EXPECT_EQ(notes[0]->id, 0);
    }
}

TEST_F(PolyMetricPassTest, ATieAtTheEndOfTheCycleReachesIntoTheNextRound)
{
    const auto notes = run({"-", "5", "-"}, 12);
    EXPECT_EQ(positionsOf(notes), (std::vector<double>{0.25, 1.0, 1.75, 2.5}));
    EXPECT_DOUBLE_EQ(notes[0]->duration, 4 * 0.2475 - 0.25);
}

TEST_F(PolyMetricPassTest, ANoteStillOpenEndsALittleBeforeTheEnd)
{
    const auto notes = run({"5", "-", "-", "-", "-", "-", "-", "-", "-", "-", "-", "-", "-", "-", "-", "-"});
    ASSERT_EQ(notes.size(), 4U);
    EXPECT_DOUBLE_EQ(notes[0]->duration, 3.96);
    EXPECT_DOUBLE_EQ(notes[3]->position + notes[3]->duration, 15.84);
}

TEST_F(PolyMetricPassTest, ACycleOfOneNoteGivesOneForEachStepAndEachIsShorter)
{
    const auto notes = run({"5"});
    ASSERT_EQ(notes.size(), 64U);
    for (std::size_t i = 0; i < notes.size(); ++i) {
        EXPECT_EQ(notes[i]->number, 65);
        EXPECT_EQ(notes[i]->position, static_cast<double>(i) * 0.25);
        EXPECT_EQ(notes[i]->id, static_cast<int>(2 * i));
    }
    EXPECT_DOUBLE_EQ(notes[0]->duration, 0.2475);
    EXPECT_NEAR(notes[63]->duration, 0.09, 1e-12);
}

TEST_F(PolyMetricPassTest, EachPassStartsAtTheBeginningOfTheCycle)
{
    generator.currentStep = 1;
    EXPECT_EQ(numbersOf(run({"1", "2", "3"}, 4)), (std::vector<int>{61, 62, 63, 61}));
    EXPECT_EQ(numbersOf(PolyMetricPass(generator, 14).run(2)), (std::vector<int>{61, 62}));
}

TEST_F(PolyMetricPassTest, ACycleOfTiesAndRestsGivesNoNote)
{
    EXPECT_TRUE(run({"-", "#"}).empty());
    EXPECT_TRUE(run({}).empty());
    EXPECT_TRUE(run({"5"}, 0).empty());
}

TEST_F(PolyMetricPassTest, AStepsTextIsANumberAsAWholeOrCountsAsZero)
{
    EXPECT_EQ(numberOf("7"), 67);
    EXPECT_EQ(numberOf("-12"), 48);
    EXPECT_EQ(numberOf("+7"), 67);
    EXPECT_EQ(numberOf("007"), 67);
    EXPECT_EQ(numberOf("-0"), 60);
    for (const char* none : {"", "x", "7x", " 7", "7 ", "+", "--1", "+-5", "-+5", "++5", "1.5", "0x10",
                             "99999999999999999999"}) {
        EXPECT_EQ(numberOf(none), 60) << none;
    }
}

TEST_F(PolyMetricPassTest, NumbersOutsideTheKeysFoldByAHundredAndTwentySeven)
{
    EXPECT_EQ(numberOf("67"), 127);
    EXPECT_EQ(numberOf("68"), 1);
    EXPECT_EQ(numberOf("-60"), 0);
    EXPECT_EQ(numberOf("-61"), 126);
    EXPECT_EQ(numberOf("322"), 255);
    EXPECT_EQ(numberOf("-187"), 0);
}

TEST_F(PolyMetricPassDeathTest, ANoteThatIsNoByteAfterTheFoldStops)
{
    EXPECT_DEATH(run({"323"}), onlyLine(conversionMessage));
    EXPECT_DEATH(run({"-188"}), onlyLine(conversionMessage));
    EXPECT_DEATH(run({"9223372036854775807"}), onlyLine(arithmeticMessage));
}

TEST_F(PolyMetricPassDeathTest, AVelocityThatIsNoByteStops)
{
    EXPECT_EQ(run({"5"}, 1, 255).front()->value, 255);
    EXPECT_DEATH(run({"5"}, 1, 256), onlyLine(conversionMessage));
    EXPECT_DEATH(run({"5"}, 1, -1), onlyLine(conversionMessage));
}

TEST_F(PolyMetricPassDeathTest, ANegativeNumberOfStepsStops)
{
    EXPECT_DEATH(run({"5"}, -1), onlyLine(rangeMessage));
}

} // namespace
} // namespace volvelle
