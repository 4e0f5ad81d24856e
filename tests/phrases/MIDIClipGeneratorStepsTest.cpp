#include "base/Checked.h"
#include "phrases/MIDIClipGenerator.h"
#include "tests/phrases/PhraseMaking.h"
#include "tests/support/ConsoleCapture.h"
#include "tests/support/ScriptedRandomSource.h"

namespace volvelle {
namespace {

using namespace test;
using Numbers = std::vector<int>;

// A generator whose chords are one C major, whose poly-meter is "1", "2", "3", and whose rhythms are empty.
class MIDIClipGeneratorStepsTest : public testing::Test {
protected:
    void SetUp() override
    {
        generator.makeArrangement(true);
        generator.phraseMixer->chordTrack->chords = {chordAt(0.0, ruleNamed("CM"))};
        meter().steps = cycleOf({"1", "2", "3"});
        for (const auto& instance : rhythm().instances) {
            instance->steps.clear();
        }
        sequence = generator.phraseMixer->sequence;
    }

    PolyMetricStepGenerator& meter() { return *generator.phraseMixer->polyMeter0->polyMetricStepGenerator; }

    PolyRhythmicStepGenerator& rhythm()
    {
        return *generator.phraseMixer->polyRhythm0->polyRhythmicStepGenerator;
    }

    bool isMixedAnew() const { return generator.phraseMixer->sequence != sequence; }

    std::shared_ptr<PolyRhythmStepEvent> soundingStep() const
    {
        auto step = std::make_shared<PolyRhythmStepEvent>();
        step->position = 0.5;
        step->duration = 1.0;
        step->velocity = 100;
        return step;
    }

    ConsoleCapture console;
    MIDIClipGenerator generator;
    std::shared_ptr<MIDISequence16> sequence;
};

using MIDIClipGeneratorStepsDeathTest = MIDIClipGeneratorStepsTest;

TEST_F(MIDIClipGeneratorStepsTest, ThePolyMetersStepsAreOnChannelFourteenAlone)
{
    EXPECT_EQ(generator.getPolyMeterSteps(14), meter().steps);
    for (const int channel : {-1, 0, 10, 13, 15}) {
        EXPECT_TRUE(generator.getPolyMeterSteps(channel).empty());
        EXPECT_EQ(generator.getPolyMeterStep(channel, 0), nullptr);
    }
}

TEST_F(MIDIClipGeneratorStepsTest, AStepOfThePolyMeterIsGivenWhereItIs)
{
    EXPECT_EQ(generator.getPolyMeterStep(14, 2), meter().steps[2]);
    EXPECT_EQ(generator.getPolyMeterStep(14, 3), nullptr);
    EXPECT_EQ(generator.getPolyMeterStep(14, -1), nullptr);
}

TEST_F(MIDIClipGeneratorStepsTest, ThePolyMeterIsCutAndFollowsAnew)
{
    generator.phraseMixer->polyMeter0->channel = 14;
    generator.adjustPolyMeterSteps(14, 1);
    EXPECT_EQ(meter().steps.size(), 1U);
    EXPECT_EQ(numbersOf(generator.getPhrase(14)), Numbers(64, 64));
    EXPECT_EQ(listOf(generator.getPhrase(14), &PhraseEvent::channel), Numbers(64, 14));
    EXPECT_FALSE(isMixedAnew());
}

TEST_F(MIDIClipGeneratorStepsTest, ThePolyMeterIsLengthenedByTies)
{
    const auto before = meter().steps;
    generator.adjustPolyMeterSteps(14, 16);
    ASSERT_EQ(meter().steps.size(), 16U);
    EXPECT_TRUE(std::equal(before.begin(), before.end(), meter().steps.begin()));
    for (std::size_t i = 3; i < 16; ++i) {
        EXPECT_EQ(meter().steps[i]->index, -1);
        EXPECT_EQ(meter().steps[i]->type, "-");
        EXPECT_EQ(meter().steps[i]->velocity, 0);
        EXPECT_EQ(meter().steps[i]->octave, 0);
        EXPECT_NE(meter().steps[i], meter().steps[i - 1]);
    }
    EXPECT_EQ(generator.getPhrase(14).size(), 12U);
}

TEST_F(MIDIClipGeneratorStepsTest, AnUnchangedSizeStillRebuildsThePolyMeter)
{
    generator.adjustPolyMeterSteps(14, 3);
    EXPECT_EQ(generator.getPhrase(14).size(), 64U);
}

TEST_F(MIDIClipGeneratorStepsTest, AForbiddenSizeOrChannelChangesNothing)
{
    for (const int number : {0, 17, -1}) {
        generator.adjustPolyMeterSteps(14, number);
        generator.adjustPolyRhythmSteps(10, 0, number);
        generator.adjustPolyRhythmSteps(10, 9, number);
    }
    generator.adjustPolyMeterSteps(13, 1);
    generator.adjustPolyRhythmSteps(9, 0, 1);
    generator.adjustPolyRhythmSteps(9, 9, 1);
    EXPECT_EQ(meter().steps.size(), 3U);
    EXPECT_TRUE(rhythm().getSteps(0).empty());
    EXPECT_TRUE(generator.getPhrase(14).empty());
    EXPECT_FALSE(isMixedAnew());
}

TEST_F(MIDIClipGeneratorStepsTest, AStepOfThePolyMeterIsReplacedByTheGivenObject)
{
    const auto step = cycleOf({"7"})[0];
    generator.setPolyMeterStep(step, 14, 1);
    EXPECT_EQ(generator.getPolyMeterStep(14, 1), step);
    ASSERT_EQ(generator.getPhrase(14).size(), 64U);
    EXPECT_EQ(generator.getPhrase(14)[1]->number, 67);
    EXPECT_FALSE(isMixedAnew());
}

TEST_F(MIDIClipGeneratorStepsTest, AStepOutsideThePolyMeterIsNotSet)
{
    const auto before = meter().steps;
    const auto step = cycleOf({"7"})[0];
    generator.setPolyMeterStep(step, 13, 1);
    generator.setPolyMeterStep(step, 14, 3);
    generator.setPolyMeterStep(step, 14, -1);
    EXPECT_EQ(meter().steps, before);
    EXPECT_TRUE(generator.getPhrase(14).empty());
}

TEST_F(MIDIClipGeneratorStepsTest, ASilentPolyMeterIsReplacedByNewSteps)
{
    SeededRandomSource source(9);
    meter().steps = cycleOf({"1"});
    generator.setPolyMeterStep(cycleOf({"#"})[0], 14, 0);
    EXPECT_FALSE(generator.getPhrase(14).empty());
    EXPECT_NE(generator.getPolyMeterStep(14, 0), nullptr);
}

TEST_F(MIDIClipGeneratorStepsTest, ThePolyRhythmsStepsAreOnChannelTenAlone)
{
    rhythm().instances[7]->steps = {soundingStep()};
    EXPECT_EQ(generator.getPolyRhythmSteps(10, 7), rhythm().instances[7]->steps);
    EXPECT_TRUE(generator.getPolyRhythmSteps(10, 8).empty());
    EXPECT_TRUE(generator.getPolyRhythmSteps(10, -1).empty());
    EXPECT_TRUE(generator.getPolyRhythmSteps(14, 7).empty());
}

TEST_F(MIDIClipGeneratorStepsTest, AStepOfThePolyRhythmIsGivenWhereItIs)
{
    rhythm().instances[7]->steps = {soundingStep()};
    EXPECT_EQ(generator.getPolyRhythmStep(10, 7, 0), rhythm().instances[7]->steps[0]);
    EXPECT_EQ(generator.getPolyRhythmStep(10, 7, 1), nullptr);
    EXPECT_EQ(generator.getPolyRhythmStep(10, 7, -1), nullptr);
    EXPECT_EQ(generator.getPolyRhythmStep(10, -1, 0), nullptr);
    EXPECT_EQ(generator.getPolyRhythmStep(10, 9, 0), nullptr);
    EXPECT_EQ(generator.getPolyRhythmStep(14, 7, 0), nullptr);
    EXPECT_EQ(generator.getPolyRhythmStep(14, 8, 0), nullptr);
}

TEST_F(MIDIClipGeneratorStepsTest, AnInstanceIsLengthenedBySilenceAndMixed)
{
    generator.adjustPolyRhythmSteps(10, 2, 16);
    ASSERT_EQ(rhythm().getSteps(2).size(), 16U);
    for (const auto& step : rhythm().getSteps(2)) {
        EXPECT_EQ(step->index, -1);
        EXPECT_EQ(step->velocity, 0);
        EXPECT_EQ(step->note, 60);
    }
    EXPECT_TRUE(generator.getPhrase(10).empty());
    EXPECT_TRUE(isMixedAnew());
}

TEST_F(MIDIClipGeneratorStepsTest, AnInstanceIsCutAndMixed)
{
    const auto first = soundingStep();
    rhythm().instances[2]->steps = {first, soundingStep(), soundingStep()};
    generator.phraseMixer->activeState[10] = true;
    generator.adjustPolyRhythmSteps(10, 2, 1);
    EXPECT_EQ(rhythm().getSteps(2), std::vector{first});
    EXPECT_EQ(positionsOf(generator.getPhrase(10)), (std::vector<double>{0.5, 4.5, 8.5, 12.5}));
    EXPECT_EQ(generator.getPhrase(-1), generator.getPhrase(10));
    EXPECT_TRUE(isMixedAnew());
}

TEST_F(MIDIClipGeneratorStepsTest, AStepOfThePolyRhythmIsReplacedAndMixed)
{
    rhythm().instances[2]->steps = {std::make_shared<PolyRhythmStepEvent>()};
    const auto step = soundingStep();
    generator.setPolyRhythmStep(step, 10, 2, 0);
    EXPECT_EQ(generator.getPolyRhythmStep(10, 2, 0), step);
    EXPECT_EQ(generator.getPhrase(10).size(), 4U);
    EXPECT_TRUE(isMixedAnew());
}

TEST_F(MIDIClipGeneratorStepsTest, AStepOutsideThePolyRhythmIsNotSet)
{
    rhythm().instances[2]->steps = {std::make_shared<PolyRhythmStepEvent>()};
    const auto before = rhythm().getSteps(2);
    const auto step = soundingStep();
    generator.setPolyRhythmStep(step, 14, 2, 0);
    generator.setPolyRhythmStep(step, 14, 8, 0);
    generator.setPolyRhythmStep(step, 10, -1, 0);
    generator.setPolyRhythmStep(step, 10, 9, 0);
    generator.setPolyRhythmStep(step, 10, 2, 1);
    generator.setPolyRhythmStep(step, 10, 2, -1);
    EXPECT_EQ(rhythm().getSteps(2), before);
    EXPECT_TRUE(generator.getPhrase(10).empty());
    EXPECT_FALSE(isMixedAnew());
}

TEST_F(MIDIClipGeneratorStepsTest, RandomStepsAreNeverGiven)
{
    EXPECT_FALSE(generator.phraseMixer->polyMeter0->randomStepGenerator->steps.empty());
    for (const int channel : {-1, 0, 10, 14}) {
        EXPECT_TRUE(generator.getRandomSteps(channel).empty());
    }
}

TEST_F(MIDIClipGeneratorStepsDeathTest, TheInstanceBehindTheLastStops)
{
    EXPECT_DEATH(generator.getPolyRhythmStep(10, 8, 0), onlyLine(indexMessage));
    EXPECT_DEATH(generator.setPolyRhythmStep(soundingStep(), 10, 8, 0), onlyLine(indexMessage));
}

TEST_F(MIDIClipGeneratorStepsDeathTest, AnAbsentStepStops)
{
    rhythm().instances[2]->steps = {soundingStep()};
    EXPECT_DEATH(generator.setPolyMeterStep(nullptr, 14, 0), onlyLine(nilMessage));
    EXPECT_DEATH(generator.setPolyRhythmStep(nullptr, 10, 2, 0), onlyLine(nilMessage));
}

TEST_F(MIDIClipGeneratorStepsDeathTest, AdjustingAnInstanceOutOfRangeStops)
{
    for (const int instance : {-1, 8, 9}) {
        EXPECT_DEATH(generator.adjustPolyRhythmSteps(10, instance, 4), onlyLine(indexMessage));
    }
}

} // namespace
} // namespace volvelle
