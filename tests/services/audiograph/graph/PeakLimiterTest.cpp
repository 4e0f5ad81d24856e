#include "services/audiograph/graph/PeakLimiter.h"

#include <cmath>
#include <gmock/gmock.h>
#include <random>

namespace volvelle::test {

namespace {

using testing::Each;
using testing::Le;

constexpr std::size_t delay = PeakLimiter::delayFrames;
const float ceiling = std::pow(10.0F, -0.3F / 20.0F);

// The left channel, rendered in blocks of `block` frames; the right one is its opposite at half the level.
std::vector<float> limited(PeakLimiter& limiter, const std::vector<float>& input, std::size_t block)
{
    std::vector<float> opposite;
    for (const float sample : input) {
        opposite.push_back(-0.5F * sample);
    }
    std::vector<float> left(input.size());
    std::vector<float> right(input.size());
    for (std::size_t done = 0; done < input.size(); done += block) {
        const std::size_t frames = std::min(block, input.size() - done);
        limiter.render(input.data() + done, opposite.data() + done, left.data() + done, right.data() + done,
                       static_cast<int>(frames));
    }
    return left;
}

float highest(const std::vector<float>& samples)
{
    float result = 0.0F;
    for (const float sample : samples) {
        result = std::max(result, std::fabs(sample));
    }
    return result;
}

TEST(PeakLimiter, TheDelayIsTheLatencyAndBelowTwoMilliseconds)
{
    const PeakLimiter limiter;
    EXPECT_EQ(limiter.latency(), static_cast<double>(delay) / 48000.0);
    EXPECT_EQ(limiter.tailTime(), limiter.latency());
    EXPECT_LT(limiter.latency(), 0.002);
}

TEST(PeakLimiter, WhatStaysBelowTheCeilingIsOnlyDelayed)
{
    PeakLimiter limiter;
    std::vector<float> input(1000);
    std::mt19937 random(3);
    std::uniform_real_distribution<float> samples(-ceiling, ceiling);
    std::generate(input.begin(), input.end(), [&] { return samples(random); });
    const std::vector<float> output = limited(limiter, input, 100);
    EXPECT_TRUE(std::equal(input.begin(), input.end() - delay, output.begin() + delay));
    EXPECT_THAT(std::vector<float>(output.begin(), output.begin() + delay), Each(0.0F));
}

TEST(PeakLimiter, AStepIsRampedDownAheadAndHeldAtTheCeiling)
{
    PeakLimiter limiter;
    limiter.parameterTree->parameterWithAddress(PeakLimiter::ceilingAddress)->setValue(0.0F);
    std::vector<float> input(400, 1.0F);
    std::fill(input.begin() + 200, input.end(), 2.0F);
    const std::vector<float> output = limited(limiter, input, 400);
    // Full gain until the step comes in, then down by 1/128 a frame until the step comes out.
    EXPECT_FLOAT_EQ(output[199], 1.0F);
    EXPECT_FLOAT_EQ(output[200], 1.0F - 1.0F / 128.0F);
    EXPECT_FLOAT_EQ(output[231], 1.0F - 32.0F / 128.0F);
    EXPECT_FLOAT_EQ(output[262], 1.0F - 63.0F / 128.0F);
    EXPECT_FLOAT_EQ(output[263], 1.0F);
    EXPECT_FLOAT_EQ(output[399], 1.0F);
}

TEST(PeakLimiter, AfterAPeakTheGainComesBackWithTheReleaseTime)
{
    PeakLimiter limiter;
    limiter.parameterTree->parameterWithAddress(PeakLimiter::ceilingAddress)->setValue(0.0F);
    limiter.parameterTree->parameterWithAddress(PeakLimiter::releaseAddress)->setValue(0.1F);
    std::vector<float> input(48000 * 3, 0.5F);
    input[0] = 2.0F;
    const std::vector<float> output = limited(limiter, input, 512);
    EXPECT_FLOAT_EQ(output[delay], 1.0F);
    const float held = output[delay + 1];
    EXPECT_NEAR(held, 0.25F, 0.001F);
    EXPECT_NEAR(output[delay + 4800 + 32], 0.5F - 0.25F * std::exp(-1.0F), 0.002F);
    EXPECT_EQ(output.back(), 0.5F);
    EXPECT_TRUE(std::is_sorted(output.begin() + delay + 1, output.end()));
}

TEST(PeakLimiter, NoSampleIsEverAboveTheCeiling)
{
    std::mt19937 random(11);
    std::uniform_real_distribution<float> samples(-1.0F, 1.0F);
    for (const float level : {0.9F, 1.1F, 4.0F, 1000.0F}) {
        for (const std::size_t block : {1U, 37U, 64U, 512U}) {
            PeakLimiter limiter;
            std::vector<float> input(20000);
            for (std::size_t i = 0; i < input.size(); ++i) {
                const bool isLoud = i / 1000 % 3 == 1 || i % 777 == 0;
                input[i] = samples(random) * (isLoud ? level : 0.2F);
            }
            EXPECT_LE(highest(limited(limiter, input, block)), ceiling);
        }
    }
}

TEST(PeakLimiter, TheOutputDoesNotDependOnTheBlockSize)
{
    std::mt19937 random(12);
    std::uniform_real_distribution<float> samples(-1.5F, 1.5F);
    std::vector<float> input(48000 * 3);
    for (std::size_t i = 0; i < input.size(); ++i) {
        input[i] = samples(random) * (i < 1000 || i % 20000 > 19990 ? 1.0F : 0.1F);
    }
    PeakLimiter reference;
    const std::vector<float> expected = limited(reference, input, 512);
    for (const std::size_t block : {1U, 37U, 64U, 333U}) {
        PeakLimiter limiter;
        EXPECT_EQ(limited(limiter, input, block), expected) << block;
    }
}

TEST(PeakLimiter, ACeilingThatFallsHoldsAtOnce)
{
    PeakLimiter limiter;
    limited(limiter, std::vector<float>(512, 0.9F), 512);
    limiter.parameterTree->parameterWithAddress(PeakLimiter::ceilingAddress)->setValue(-20.0F);
    EXPECT_LE(highest(limited(limiter, std::vector<float>(512, 0.9F), 512)), 0.1F + 1e-6F);
}

TEST(PeakLimiter, ThePreGainComesBeforeTheCeiling)
{
    PeakLimiter limiter;
    limiter.parameterTree->parameterWithAddress(PeakLimiter::preGainAddress)->setValue(20.0F);
    EXPECT_FLOAT_EQ(limited(limiter, std::vector<float>(200, 0.01F), 200).back(), 0.1F);
    EXPECT_FLOAT_EQ(limited(limiter, std::vector<float>(500, 0.5F), 500).back(), ceiling);
}

TEST(PeakLimiter, SamplesThatAreNoNumbersCountAsSilence)
{
    PeakLimiter limiter;
    std::vector<float> input(400, 0.25F);
    input[100] = std::nanf("");
    input[101] = HUGE_VALF;
    const std::vector<float> output = limited(limiter, input, 100);
    EXPECT_EQ(output[100 + delay], 0.0F);
    EXPECT_EQ(output[101 + delay], 0.0F);
    EXPECT_EQ(output[102 + delay], 0.25F);
}

TEST(PeakLimiter, AResetForgetsWhatWasHeard)
{
    PeakLimiter limiter;
    limited(limiter, std::vector<float>(200, 3.0F), 200);
    limiter.reset();
    const std::vector<float> output = limited(limiter, std::vector<float>(200, 0.5F), 200);
    EXPECT_EQ(output[delay - 1], 0.0F);
    EXPECT_EQ(output[delay], 0.5F);
}

} // namespace

} // namespace volvelle::test
