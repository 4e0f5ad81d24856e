#include "services/audiodevice/DevicePuller.h"

#include "tests/services/audiodevice/CountingSource.h"

#include <algorithm>
#include <cmath>
#include <gtest/gtest.h>
#include <numbers>
#include <vector>

namespace volvelle::test {

namespace {

using std::chrono::milliseconds;

// 1,000 Hz on the left, silence on the right.
class LeftTone : public AudioSource {
public:
    void render(float* left, float* right, int frames) noexcept override
    {
        for (int i = 0; i < frames; ++i) {
            left[i] = static_cast<float>(std::sin(2.0 * std::numbers::pi * 1000.0 * (frame++) / sampleRate));
            right[i] = 0.0F;
        }
    }

private:
    double frame = 0.0;
};

// What a device of that shape gets of a second, in blocks of `block`.
std::vector<float> secondOf(AudioSource& source, int rate, int channels, int block)
{
    DevicePuller puller(source, rate, channels);
    std::vector<float> result(static_cast<std::size_t>(rate) * static_cast<std::size_t>(channels));
    for (int done = 0; done < rate; done += block) {
        const int count = std::min(block, rate - done);
        puller.pull(result.data() + std::ptrdiff_t{done} * channels, count,
                    milliseconds(1000L * done / rate));
    }
    return result;
}

// The greatest distance of a channel from a tone of 1,000 Hz, after a tenth of a second.
double distanceFromTone(const std::vector<float>& samples, int rate, int channels)
{
    double greatest = 0.0;
    for (std::size_t i = static_cast<std::size_t>(rate) / 10; i < static_cast<std::size_t>(rate); ++i) {
        const double expected = std::sin(2.0 * std::numbers::pi * 1000.0 * static_cast<double>(i) / rate);
        greatest = std::max(greatest, std::abs(expected - samples[i * static_cast<std::size_t>(channels)]));
    }
    return greatest;
}

} // namespace

TEST(DevicePullerTest, GivesADeviceOfTheSourcesRateEachFrameInAnyBlocks)
{
    for (const int block : {1, 37, 512, 5000}) {
        CountingSource source;
        const std::vector<float> samples = secondOf(source, 48'000, 2, block);
        for (std::size_t i = 0; i < 48'000; ++i) {
            ASSERT_EQ(samples[2 * i], static_cast<float>(i + 1));
            ASSERT_EQ(samples[2 * i + 1], -static_cast<float>(i + 1));
        }
    }
}

TEST(DevicePullerTest, ConvertsToTheDevicesRate)
{
    for (const int rate : {22'050, 44'100, 96'000, 192'000}) {
        LeftTone source;
        const std::vector<float> samples = secondOf(source, rate, 2, 441);
        EXPECT_LT(distanceFromTone(samples, rate, 2), 0.01) << rate;
    }
}

TEST(DevicePullerTest, PullsNoMoreOfTheSourceThanTheDevicesRateAsksFor)
{
    CountingSource source;
    secondOf(source, 44'100, 2, 512);
    EXPECT_NEAR(source.frames, 48'000, 1024);
}

TEST(DevicePullerTest, GivesOneChannelTheMeanOfBoth)
{
    CountingSource source;
    const std::vector<float> samples = secondOf(source, 48'000, 1, 512);
    EXPECT_EQ(std::count(samples.begin(), samples.end(), 0.0F), 48'000);
    LeftTone tone;
    const std::vector<float> half = secondOf(tone, 48'000, 1, 512);
    EXPECT_NEAR(*std::max_element(half.begin(), half.end()), 0.5, 1e-6);
}

TEST(DevicePullerTest, LeavesFurtherChannelsSilent)
{
    CountingSource source;
    const std::vector<float> samples = secondOf(source, 48'000, 6, 512);
    for (std::size_t i = 0; i < 48'000; ++i) {
        ASSERT_EQ(samples[6 * i], static_cast<float>(i + 1));
        ASSERT_EQ(samples[6 * i + 1], -static_cast<float>(i + 1));
        ASSERT_EQ(std::count(&samples[6 * i + 2], &samples[6 * i] + 6, 0.0F), 4);
    }
}

TEST(DevicePullerTest, StopsADeviceThatRunsAway)
{
    CountingSource source;
    DevicePuller puller(source, 48'000.0, 2);
    std::vector<float> block(1024);
    int pulls = 0;
    while (puller.pull(block.data(), 512, milliseconds(1000)) == DevicePuller::Answer::goOn) {
        ASSERT_LT(++pulls, 1000);
    }
    EXPECT_EQ(pulls, 4 * 48'000 / 512);
    EXPECT_TRUE(puller.isLost());
    EXPECT_EQ(std::count(block.begin(), block.end(), 0.0F), 1024);
    EXPECT_EQ(puller.pull(block.data(), 512, milliseconds(9000)), DevicePuller::Answer::stop);
    EXPECT_EQ(source.frames, pulls * 512);
}

TEST(DevicePullerTest, ToleratesBurstsOfADeviceThatFillsItsBuffer)
{
    CountingSource source;
    DevicePuller puller(source, 48'000.0, 2);
    std::vector<float> block(96'000);
    for (int second = 0; second < 60; second += 2) {
        ASSERT_EQ(puller.pull(block.data(), 48'000, milliseconds(second * 1000)), DevicePuller::Answer::goOn);
        ASSERT_EQ(puller.pull(block.data(), 48'000, milliseconds(second * 1000)), DevicePuller::Answer::goOn);
    }
    EXPECT_FALSE(puller.isLost());
}

TEST(DevicePullerTest, StopsADeviceThatFailed)
{
    CountingSource source;
    DevicePuller puller(source, 48'000.0, 2);
    puller.lose();
    std::vector<float> block(1024, 1.0F);
    EXPECT_EQ(puller.pull(block.data(), 512, milliseconds(0)), DevicePuller::Answer::stop);
    EXPECT_EQ(std::count(block.begin(), block.end(), 0.0F), 1024);
    EXPECT_EQ(source.frames, 0);
}

TEST(DevicePullerTest, IsNotUsableAtARateThatCannotBeConverted)
{
    CountingSource source;
    EXPECT_FALSE(DevicePuller(source, 1.0, 2).isUsable());
    EXPECT_TRUE(DevicePuller(source, 384'000.0, 2).isUsable());
}

} // namespace volvelle::test
