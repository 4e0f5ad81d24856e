#include "services/synthesizer/Synthesizer.h"

#include "tests/services/synthesizer/DryFixture.h"
#include "tests/services/synthesizer/Measuring.h"

#include <gtest/gtest.h>

#include <algorithm>

namespace volvelle::test {

namespace {

using SynthesizerRestTest = DryFixture;

} // namespace

TEST_F(SynthesizerRestTest, GoesOnAfterARestWhereItWouldWithout)
{
    constexpr int silence = 100'003;
    const auto rested = *Synthesizer::make(builtInBank(), {.reverb = false, .chorus = false, .rests = true});
    renderFrames(*rested, silence, 37);
    renderFrames(*dry, silence, 37);
    for (Synthesizer* synthesizer : {rested.get(), dry.get()}) {
        synthesizer->noteOn(0, 60, 100, 5);
        synthesizer->noteOff(0, 60, 9000);
    }
    EXPECT_EQ(difference(renderFrames(*rested, 20'000), renderFrames(*dry, 20'000)), 0.0);
}

TEST_F(SynthesizerRestTest, RestsASecondAfterTheLastTailWhereItMay)
{
    const auto rested = *Synthesizer::make(builtInBank(), {.rests = true});
    const auto restless = *Synthesizer::make(builtInBank(), {});
    for (Synthesizer* synthesizer : {rested.get(), restless.get()}) {
        synthesizer->noteOn(0, 60, 127);
        synthesizer->noteOff(0, 60, 4800);
        renderFrames(*synthesizer, 20 * 48'000);
    }
    EXPECT_EQ(peak(renderFrames(*rested, 4800)), 0.0);
    const double hiss = peak(renderFrames(*restless, 4800));
    EXPECT_GT(hiss, 0.0);
    EXPECT_LT(hiss, 1e-6);
    rested->noteOn(0, 60, 127);
    EXPECT_GT(peak(renderFrames(*rested, 48'000)), 0.01);
}

TEST_F(SynthesizerRestTest, DoesNotRestWhileAVoiceIsToBegin)
{
    const auto rested = *Synthesizer::make(builtInBank(), {.reverb = false, .chorus = false, .rests = true});
    for (Synthesizer* synthesizer : {rested.get(), dry.get()}) {
        synthesizer->controller(0, 99, 120); // a parameter of SoundFonts
        synthesizer->controller(0, 98, 33);  // the delay before the attack
        synthesizer->controller(0, 38, 0);
        synthesizer->controller(0, 6, 118);
        synthesizer->noteOn(0, 60, 100);
    }
    const Stereo late = renderFrames(*dry, 6 * 48'000);
    EXPECT_GT(firstSound(late), 48'000U);
    EXPECT_LT(firstSound(late), 5U * 48'000U);
    EXPECT_EQ(difference(renderFrames(*rested, 6 * 48'000), late), 0.0);
}

// On one side, so that neither channel stands for both.
TEST_F(SynthesizerRestTest, CutsNoTailShort)
{
    for (const int side : {0, 127}) {
        const auto rested = *Synthesizer::make(builtInBank(), {.rests = true});
        const auto restless = *Synthesizer::make(builtInBank(), {});
        for (Synthesizer* synthesizer : {rested.get(), restless.get()}) {
            synthesizer->controller(0, 10, side);
            synthesizer->controller(0, 91, 127);
            synthesizer->noteOn(0, 60, 127);
            synthesizer->noteOff(0, 60, 4800);
        }
        EXPECT_LE(difference(renderFrames(*rested, 12 * 48'000), renderFrames(*restless, 12 * 48'000)), 1e-6);
    }
}

TEST_F(SynthesizerRestTest, RestsAfterASecondInARowAtAnyRate)
{
    for (const int second : {48'000, 22'050}) {
        const SynthesizerOptions options{.sampleRate = static_cast<double>(second), .rests = true};
        const auto rested = *Synthesizer::make(builtInBank(), options);
        const auto peaks = [&](int frames) {
            std::vector<double> found;
            for (int done = 0; done < frames; done += 64) {
                found.push_back(peak(renderFrames(*rested, 64, 64)));
            }
            return found;
        };
        peaks(second / 2);
        rested->noteOn(0, 60, 127);
        rested->noteOff(0, 60, 4800);
        const auto heard = peaks(20 * second);
        const auto last =
            std::ranges::find_if(heard.rbegin(), heard.rend(), [](double p) { return p > 0.0; });
        const auto loud = std::find_if(last, heard.rend(), [](double p) { return p >= 1e-6; });
        EXPECT_NE(last, heard.rbegin());
        EXPECT_NEAR(static_cast<double>(loud - last) * 64, second, 64);
    }
}

} // namespace volvelle::test
