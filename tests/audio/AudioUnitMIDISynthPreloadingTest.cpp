#include "tests/audio/SynthFixture.h"

namespace volvelle::test {
namespace {

class AudioUnitMIDISynthPreloadingTest : public SynthTest {
protected:
    void SetUp() override { createSynth(); }
};

TEST_F(AudioUnitMIDISynthPreloadingTest, EachPatchIsSentBehindItsBankBetweenEnablingAndDisabling)
{
    synth->preloadPatches(3, {5, 127}, 121, 2);
    EXPECT_EQ(takeCalls(),
              (Lines{preload(true), "midi 179 0 121 at 0", "midi 179 32 2 at 0", "midi 195 5 0 at 0",
                     "midi 179 0 121 at 0", "midi 179 32 2 at 0", "midi 195 127 0 at 0", preload(false)}));
    EXPECT_EQ(console.take(),
              Lines{"AudioUnitMIDISynth::preloadPatches() : Sound patch(es) (melodic) was/where preloaded."});
}

TEST_F(AudioUnitMIDISynthPreloadingTest, TheBankIsZeroWhereNoneIsGiven)
{
    synth->preloadPatches(0, {1});
    EXPECT_EQ(takeCalls(), (Lines{preload(true), "midi 176 0 0 at 0", "midi 176 32 0 at 0",
                                  "midi 192 1 0 at 0", preload(false)}));
}

TEST_F(AudioUnitMIDISynthPreloadingTest, WithoutPatchesPreloadingIsStillEnabledAndDisabled)
{
    synth->preloadPatches(0, {});
    EXPECT_EQ(takeCalls(), (Lines{preload(true), preload(false)}));
    synth->preloadPatches2({});
    EXPECT_EQ(takeCalls(), (Lines{preload(true), preload(false)}));
}

TEST_F(AudioUnitMIDISynthPreloadingTest, AFailureToEnableSendsNoMIDI)
{
    failWhere(preload(true), -11);
    synth->preloadPatches(0, {1, 2});
    synth->preloadPatches2({1, 2});
    synth->preloadPatch(1, 2, 3, 4);
    EXPECT_EQ(takeCalls(), (Lines{preload(true), preload(true), preload(true)}));
    EXPECT_EQ(
        console.take(),
        (Lines{"AudioUnitMIDISynth::preloadPatches() : ERROR: Preloading patches could not be enabled. -11",
               "AudioUnitMIDISynth::preloadPatches2() : ERROR: Preloading patches could not be enabled. -11",
               "AudioUnitMIDISynth::preloadPatch() : ERROR: Preloading patches could not be enabled. -11"}));
}

TEST_F(AudioUnitMIDISynthPreloadingTest, AFailingPatchDoesNotStopTheOthersAndPreloadingIsDisabledAtTheEnd)
{
    failWhere("midi 192 5 ", -12);
    synth->preloadPatches(0, {4, 5, 6});
    EXPECT_EQ(takeCalls(),
              (Lines{preload(true), "midi 176 0 0 at 0", "midi 176 32 0 at 0", "midi 192 4 0 at 0",
                     "midi 176 0 0 at 0", "midi 176 32 0 at 0", "midi 192 5 0 at 0", "midi 176 0 0 at 0",
                     "midi 176 32 0 at 0", "midi 192 6 0 at 0", preload(false)}));
    EXPECT_EQ(
        console.take(),
        (Lines{"AudioUnitMIDISynth::preloadPatches() : ERROR: A patch (5) could not be preloaded. -12",
               "AudioUnitMIDISynth::preloadPatches() : Sound patch(es) (melodic) was/where preloaded."}));
}

TEST_F(AudioUnitMIDISynthPreloadingTest, AFailingBankSelectOfALoopIsPassedOver)
{
    failWhere("midi 176", -12);
    synth->preloadPatches(0, {4});
    EXPECT_EQ(console.take(),
              Lines{"AudioUnitMIDISynth::preloadPatches() : Sound patch(es) (melodic) was/where preloaded."});
}

TEST_F(AudioUnitMIDISynthPreloadingTest, AFailureToDisableIsTold)
{
    failWhere(preload(false), -13);
    synth->preloadPatches(0, {1});
    synth->preloadPatches2({1});
    synth->preloadPatch();
    EXPECT_EQ(
        console.take(),
        (Lines{"AudioUnitMIDISynth::preloadPatches() : ERROR: Preloading patches could not be disabled. -13",
               "AudioUnitMIDISynth::preloadPatches2() : ERROR: Preloading patches could not be disabled. -13",
               "AudioUnitMIDISynth::preloadPatch() : ERROR: Preloading patches could not be disabled. -13"}));
}

TEST_F(AudioUnitMIDISynthPreloadingTest, RhythmPatchesGoToTheRhythmChannelWithoutABank)
{
    synth->preloadPatches2({0, 25});
    EXPECT_EQ(takeCalls(), (Lines{preload(true), "midi 201 0 0 at 0", "midi 201 25 0 at 0", preload(false)}));
    EXPECT_EQ(console.take(), Lines{"AudioUnitMIDISynth::Sound patch(es) (rhythmic) was/where preloaded."});
}

TEST_F(AudioUnitMIDISynthPreloadingTest, AFailingRhythmPatchDoesNotStopTheOthers)
{
    failWhere("midi 201 0 ", -14);
    synth->preloadPatches2({0, 25});
    EXPECT_EQ(takeCalls(), (Lines{preload(true), "midi 201 0 0 at 0", "midi 201 25 0 at 0", preload(false)}));
    EXPECT_EQ(console.take(),
              (Lines{"AudioUnitMIDISynth::preloadPatches2() : ERROR: A patch could not be preloaded. -14",
                     "AudioUnitMIDISynth::Sound patch(es) (rhythmic) was/where preloaded."}));
}

TEST_F(AudioUnitMIDISynthPreloadingTest, ASinglePatchIsPreloadedWithItsBank)
{
    synth->preloadPatch(121, 3, 40, 9);
    EXPECT_EQ(takeCalls(), (Lines{preload(true), "midi 185 0 121 at 0", "midi 185 32 3 at 0",
                                  "midi 201 40 0 at 0", preload(false)}));
    EXPECT_EQ(console.take(),
              Lines{"AudioUnitMIDISynth::preloadPatch() : Sound patch 121, 3, 40 was preloaded."});
}

TEST_F(AudioUnitMIDISynthPreloadingTest, AnyFailureOfASinglePatchLeavesTheLaterStepsUndone)
{
    const Lines steps{preload(true), "midi 176 0 0 at 0", "midi 176 32 0 at 0", "midi 192 0 0 at 0"};
    for (std::size_t failing = 1; failing < steps.size(); ++failing) {
        failWhere(steps[failing], -15);
        synth->preloadPatch();
        EXPECT_EQ(takeCalls(),
                  Lines(steps.begin(), steps.begin() + static_cast<std::ptrdiff_t>(failing) + 1));
        EXPECT_EQ(console.take(),
                  Lines{"AudioUnitMIDISynth::preloadPatch() : ERROR: A patch could not be preloaded. -15"});
    }
}

TEST_F(AudioUnitMIDISynthPreloadingTest, InitializingWithoutPreloadSendsNoMIDI)
{
    synth->initialize(0, false);
    EXPECT_EQ(takeCalls(), Lines{"property 1100 of 0 0: /banks/some.bank (8 bytes)"});
}

TEST_F(AudioUnitMIDISynthPreloadingTest, InitializingWithPreloadLoadsAllProgramsOnBothChannels)
{
    synth->initialize(2, true);
    Lines expected{"property 1100 of 0 0: /banks/some.bank (8 bytes)", preload(true)};
    for (int program = 0; program < 128; ++program) {
        expected.insert(expected.end(),
                        {"midi 176 0 0 at 0", "midi 176 32 0 at 0", concat("midi 192 ", program, " 0 at 0")});
    }
    expected.insert(expected.end(), {preload(false), preload(true)});
    for (int program = 0; program < 128; ++program) {
        expected.push_back(concat("midi 201 ", program, " 0 at 0"));
    }
    expected.push_back(preload(false));
    EXPECT_EQ(takeCalls(), expected);
    EXPECT_EQ(asked, Lines{"soundfont1.sf2"});
}

TEST_F(AudioUnitMIDISynthPreloadingTest, AMissingBankDoesNotKeepThePatchesFromLoading)
{
    bank.reset();
    synth->initialize(0, true);
    EXPECT_EQ(console.take(),
              (Lines{"AudioUnitMIDISynth::loadSoundFont() : ERROR: The soundfont could not be found.",
                     "AudioUnitMIDISynth::preloadPatches() : Sound patch(es) (melodic) was/where preloaded.",
                     "AudioUnitMIDISynth::Sound patch(es) (rhythmic) was/where preloaded."}));
}

} // namespace
} // namespace volvelle::test
