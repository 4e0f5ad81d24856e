#include "services/synthesizer/Synthesizer.h"

#include "tests/services/synthesizer/DryFixture.h"
#include "tests/services/synthesizer/Measuring.h"
#include "tests/support/ConsoleCapture.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <cmath>
#include <cstdio>

namespace volvelle::test {

namespace {

class SynthesizerTest : public DryFixture {
protected:
    static std::unique_ptr<Synthesizer> wet() { return *Synthesizer::make(builtInBank(), {}); }

    // A short piece with messages off the 64-frame grid, all of them sent ahead of their blocks.
    static Stereo piece(Synthesizer& synthesizer, int block)
    {
        synthesizer.program(1, 48, 100);
        synthesizer.controller(1, 1, 90, 130);
        for (int i = 0; i < 40; ++i) {
            const int channel = i % 3 == 2 ? Synthesizer::drumChannel : i % 3;
            synthesizer.noteOn(channel, 40 + i, 100, 777 * i + 3);
            synthesizer.noteOff(channel, 40 + i, 777 * i + 2001);
        }
        synthesizer.pitchBend(0, 12000, 9999);
        return renderFrames(synthesizer, 48000, block);
    }
};

// How many frames the sound of a note-on at `offset` comes after that of one at 0.
std::size_t delayOf(int offset)
{
    auto synthesizer = drySynthesizer(builtInBank());
    synthesizer->noteOn(9, 38, 127, offset);
    const std::size_t late = firstSound(renderFrames(*synthesizer, 4096));
    synthesizer = drySynthesizer(builtInBank());
    synthesizer->noteOn(9, 38, 127, 0);
    return late - firstSound(renderFrames(*synthesizer, 4096));
}

} // namespace

TEST_F(SynthesizerTest, IsSilentWithoutNotes)
{
    EXPECT_TRUE(isSilent(renderFrames(*dry, 9600)));
    EXPECT_EQ(dry->activeVoices(), 0);
}

TEST_F(SynthesizerTest, SoundsTheSameInBlocksOfAnySize)
{
    const Stereo expected = piece(*wet(), 512);
    EXPECT_GT(level(expected, 0, 48000), -60.0);
    for (const int block : {1, 37, 64, 480, 1000, 4096}) {
        EXPECT_LE(difference(piece(*wet(), block), expected), 1e-6) << block;
    }
}

TEST_F(SynthesizerTest, StartsANoteAtTheNext64thFrame)
{
    for (const auto& [offset, expected] : {std::pair(0, 0),
                                           {1, 64},
                                           {63, 64},
                                           {64, 64},
                                           {65, 128},
                                           {300, 320},
                                           {512, 512},
                                           {700, 704},
                                           {3000, 3008}}) {
        EXPECT_EQ(delayOf(offset), static_cast<std::size_t>(expected)) << offset;
    }
}

TEST_F(SynthesizerTest, TakesANegativeOffsetAsTheStartOfTheBlock)
{
    EXPECT_EQ(delayOf(-5), 0U);
}

TEST_F(SynthesizerTest, PlaysA440At440HertzAndDecaysBehindTheNoteOff)
{
    const Stereo sound = renderNote(*dry, {.key = 69, .releaseFrames = 48000});
    const auto heard = pitch(sound, 6000, 12000, 440.0);
    ASSERT_TRUE(heard);
    EXPECT_NEAR(cents(*heard, 440.0), 0.0, 2.0);
    EXPECT_GT(level(sound, 0, 24000), -50.0);
    EXPECT_LT(level(sound, 62000, 10000), level(sound, 20000, 4000) - 40.0);
}

TEST_F(SynthesizerTest, ForgetsAVoiceOnceItHasFaded)
{
    dry->noteOn(0, 69, 100);
    renderFrames(*dry, 4800);
    EXPECT_GT(dry->activeVoices(), 0);
    dry->noteOff(0, 69);
    renderFrames(*dry, 10 * 48000);
    EXPECT_EQ(dry->activeVoices(), 0);
}

TEST_F(SynthesizerTest, TakesANoteOnOfNoVelocityForANoteOff)
{
    dry->noteOn(0, 69, 100);
    dry->noteOn(0, 69, 0, 4800);
    renderFrames(*dry, 10 * 48000);
    EXPECT_EQ(dry->activeVoices(), 0);
}

TEST_F(SynthesizerTest, PlaysDrumsOnTheTenthChannelOnly)
{
    const Stereo drum = renderNote(*dry, {.channel = 9, .key = 38});
    const Stereo note = renderNote(*dry, {.channel = 8, .key = 38});
    const auto pianoPitch = pitch(note, 6000, 12000, frequencyOf(38));
    ASSERT_TRUE(pianoPitch);
    EXPECT_NEAR(cents(*pianoPitch, frequencyOf(38)), 0.0, 10.0);
    EXPECT_FALSE(pitch(drum, 6000, 12000, frequencyOf(38)));
    EXPECT_GT(level(drum, 0, 4800), -50.0);
}

TEST_F(SynthesizerTest, BendsByTwoSemitones)
{
    dry->pitchBend(0, 16383);
    dry->noteOn(0, 69, 100);
    const auto heard = pitch(renderFrames(*dry, 24000), 6000, 12000, frequencyOf(71));
    ASSERT_TRUE(heard);
    EXPECT_NEAR(cents(*heard, frequencyOf(71)), 0.0, 5.0);
}

TEST_F(SynthesizerTest, FollowsVolumeAndPan)
{
    dry->controller(0, 10, 0);
    dry->program(0, 19);
    dry->noteOn(0, 60, 100);
    const Stereo left = renderFrames(*dry, 24000);
    EXPECT_GT(level({left.left, left.left}, 12000, 12000),
              level({left.right, left.right}, 12000, 12000) + 10.0);
    dry->controller(0, 7, 0);
    EXPECT_LT(level(renderFrames(*dry, 24000), 12000, 12000), -100.0);
}

TEST_F(SynthesizerTest, PreloadingChangesNothingThatIsHeard)
{
    const Stereo before = renderNote(*dry, {.program = 40});
    auto other = drySynthesizer(builtInBank());
    other->reset();
    other->program(0, 40);
    EXPECT_TRUE(other->preload({0, 0, 0, 73}));
    EXPECT_TRUE(other->preload({0, 0, 0, 73}));
    EXPECT_TRUE(other->preload({9, 0, 0, 0}));
    EXPECT_TRUE(other->preload({3, 99, 1, 5}));
    EXPECT_TRUE(isSilent(renderFrames(*other, 4096)));
    other->noteOn(0, 60, 100);
    other->noteOff(0, 60, 24000);
    EXPECT_LE(difference(renderFrames(*other, 36032, 4096), before), 1e-6);
}

TEST_F(SynthesizerTest, ResettingForgetsSoundsProgramsAndWhatWaits)
{
    const Stereo fresh = renderNote(*dry, {});
    dry->program(0, 56);
    dry->controller(0, 7, 10);
    dry->noteOn(0, 72, 127);
    renderFrames(*dry, 4800);
    dry->noteOn(0, 48, 127, 100);
    dry->reset();
    const Stereo after = renderFrames(*dry, 4096);
    EXPECT_TRUE(isSilent(after));
    EXPECT_EQ(dry->activeVoices(), 0);
    // A voice that is used again keeps a trace of its filter, 50 dB below the note.
    EXPECT_LE(difference(renderNote(*dry, {}), fresh), 3e-4);
    dry->noteOn(0, 48, 127, 100);
    dry->reset();
    renderFrames(*dry, 64);
    EXPECT_TRUE(isSilent(renderFrames(*dry, 4096)));
}

TEST_F(SynthesizerTest, AModeOfTheFirstChannelLeavesTheOthersSounding)
{
    for (const int mode : {124, 125, 126, 127}) {
        dry->reset();
        dry->controller(0, mode, 1);
        dry->noteOn(5, 60, 100);
        dry->noteOn(0, 64, 100);
        EXPECT_GT(level(renderFrames(*dry, 9600), 0, 9600), -60.0) << mode;
        EXPECT_GE(dry->activeVoices(), 2) << mode;
    }
}

TEST_F(SynthesizerTest, AModeEndsTheNotesOfItsChannel)
{
    for (const int mode : {123, 124, 125, 126, 127}) {
        dry->reset();
        dry->program(0, 19);
        dry->noteOn(0, 60, 100);
        renderFrames(*dry, 9600);
        dry->controller(0, mode, 0);
        renderFrames(*dry, 48000);
        EXPECT_EQ(dry->activeVoices(), 0) << mode;
    }
}

// Generators that lead out of a sample, to another one or into its order would end the program.
TEST_F(SynthesizerTest, NoParameterReachesBeyondASample)
{
    for (int number = 0; number < 128; ++number) {
        for (const int value : {0, 64, 127}) {
            dry->reset();
            dry->controller(0, 99, 120);
            dry->controller(0, 98, number);
            dry->controller(0, 38, 127);
            dry->controller(0, 6, value);
            dry->controller(0, 6, value);
            dry->noteOn(0, 60, 100);
            renderFrames(*dry, 1024);
        }
    }
    SUCCEED();
}

TEST_F(SynthesizerTest, AParameterIsSetByEachDataThatComesForIt)
{
    const auto sharpened = [this](const std::vector<int>& data) {
        dry->reset();
        dry->controller(0, 99, 120);
        dry->controller(0, 98, 51); // semitones
        for (const int value : data) {
            dry->controller(0, 6, value);
        }
        dry->program(0, 80);
        dry->noteOn(0, 69, 100);
        return renderFrames(*dry, 24000);
    };
    const Stereo plain = sharpened({64});
    const Stereo once = sharpened({65});
    const Stereo twice = sharpened({64, 65});
    EXPECT_GT(difference(plain, once), 0.01);
    EXPECT_LE(difference(once, twice), 3e-3);
}

TEST_F(SynthesizerTest, TheResetOfControllersLeavesTuningsOfTheChannel)
{
    dry->controller(0, 101, 0);
    dry->controller(0, 100, 2);
    dry->controller(0, 6, 64 + 12);
    dry->controller(0, 121, 0);
    dry->program(0, 80);
    dry->noteOn(0, 57, 100);
    const auto heard = pitch(renderFrames(*dry, 24000), 6000, 12000, 440.0);
    ASSERT_TRUE(heard);
    EXPECT_NEAR(cents(*heard, 440.0), 0.0, 15.0);
}

TEST_F(SynthesizerTest, ForgettingSettingsBringsEachChannelBackInTune)
{
    const auto note = [this](int channel, bool isTuned, bool isForgotten) {
        dry->reset();
        if (isTuned) {
            dry->controller(channel, 99, 120);
            dry->controller(channel, 98, 51); // semitones
            dry->controller(channel, 6, 65);
        }
        renderFrames(*dry, 64);
        if (isForgotten) {
            dry->forgetSettings();
        }
        dry->program(channel, 80);
        dry->noteOn(channel, 69, 100);
        return renderFrames(*dry, 24000);
    };
    for (const int channel : {0, 8, 15}) {
        const Stereo plain = note(channel, false, false);
        EXPECT_GT(difference(plain, note(channel, true, false)), 0.04) << channel;
        EXPECT_LT(difference(plain, note(channel, true, true)), 0.02) << channel;
    }
}

TEST_F(SynthesizerTest, TakesSystemExclusiveMessages)
{
    const std::vector<std::uint8_t> quiet{0xF0, 0x7F, 0x7F, 0x04, 0x01, 0x00, 0x00, 0xF7};
    dry->systemExclusive(quiet, 10);
    dry->systemExclusive(std::vector<std::uint8_t>{0xF0, 0x7E});
    dry->systemExclusive({});
    dry->noteOn(0, 60, 100);
    EXPECT_FALSE(isSilent(renderFrames(*dry, 9600)));
}

TEST_F(SynthesizerTest, DropsWhatIsNoChannelMessage)
{
    dry->message(0x40, 60, 100);
    dry->message(0xF8, 60, 100);
    EXPECT_TRUE(isSilent(renderFrames(*dry, 4096)));
    dry->message(0x93, 60, 100);
    EXPECT_FALSE(isSilent(renderFrames(*dry, 4096)));
}

TEST_F(SynthesizerTest, LeavesNoNoteSoundingWhereThousandsWait)
{
    for (int i = 0; i < 10000; ++i) {
        dry->noteOn(0, 60, 100, 10);
        dry->noteOff(0, 60, 20);
    }
    renderFrames(*dry, 10 * 48000);
    EXPECT_TRUE(isSilent(renderFrames(*dry, 4800)));
}

TEST_F(SynthesizerTest, PeaksNearSixDecibelsBelowFullWithADenseArrangement)
{
    auto synthesizer = wet();
    constexpr int eighth = 12000;
    constexpr int programs[] = {0, 33, 48, 27, 61, 73, 19, 56, 80, 0, 11, 52};
    for (int channel = 0; channel < 12; ++channel) {
        synthesizer->program(channel, programs[channel]);
    }
    double greatest = 0.0;
    for (int step = 0; step < 32; ++step) {
        for (int channel = 0; channel < 12; ++channel) {
            const int root = channel == 1 ? 36 : 48 + 12 * (channel % 3);
            for (const int above : {0, 4, 7}) {
                const int key = channel == 9 ? 36 + 2 * above : root + above;
                const bool isPlayed = channel == 9 || channel == 0 || (step + channel) % 2 == 0;
                if (isPlayed && (channel != 1 || above == 0)) {
                    synthesizer->noteOn(channel, key, 105, 60 * channel);
                    synthesizer->noteOff(channel, key, eighth - 500);
                }
            }
        }
        greatest = std::max(greatest, peak(renderFrames(*synthesizer, eighth)));
    }
    const double decibels = 20.0 * std::log10(greatest);
    std::printf("dense arrangement: peak %.1f dBFS\n", decibels);
    EXPECT_GT(decibels, -10.0);
    EXPECT_LT(decibels, -3.0);
}

TEST_F(SynthesizerTest, PrintsNothingForAGoodBank)
{
    ConsoleCapture console;
    auto made = drySynthesizer(builtInBank());
    renderNote(*made, {});
    made.reset();
    EXPECT_TRUE(console.take().empty());
}

} // namespace volvelle::test
