#include "services/audiograph/graph/AVAudioMixerNode.h"
#include "tests/services/audiograph/Studio.h"

#include <cmath>
#include <complex>
#include <gmock/gmock.h>
#include <numbers>

namespace volvelle::test {

namespace {

// The amplitude of one frequency in `sound`, by a Hann window.
double level(const std::vector<float>& sound, double frequency)
{
    std::complex<double> sum;
    double weights = 0.0;
    for (std::size_t i = 0; i < sound.size(); ++i) {
        const double place = static_cast<double>(i);
        const double weight =
            0.5 - 0.5 * std::cos(2.0 * std::numbers::pi * place / static_cast<double>(sound.size()));
        sum += weight * static_cast<double>(sound[i]) *
               std::polar(1.0, -2.0 * std::numbers::pi * frequency * place / 48000.0);
        weights += weight;
    }
    return 2.0 * std::abs(sum) / weights;
}

double decibels(double ratio)
{
    return 20.0 * std::log10(ratio);
}

struct Mix : Studio {
    explicit Mix(int blockFrames = 512) : Studio(blockFrames) {}

    void add(const std::shared_ptr<AVAudioNode>& node)
    {
        EXPECT_EQ(engine->attachNode(node), noErr);
        EXPECT_EQ(engine->connect(node, engine->mainMixerNode(), 0,
                                  engine->mainMixerNode()->nextAvailableInputBus()),
                  noErr);
    }
};

class AVAudioMixerNodeBlocksTest : public EachBlockSize {};

VOLVELLE_EACH_BLOCK_SIZE(AVAudioMixerNodeBlocksTest);

TEST_P(AVAudioMixerNodeBlocksTest, InputsAreSummed)
{
    Mix mix(GetParam());
    mix.add(nodeOf<CountingUnit>(0.5F));
    mix.add(nodeOf<CountingUnit>(0.25F));
    mix.run(5000);
    bool isSum = true;
    for (std::size_t i = 0; i < 5000; ++i) {
        isSum = isSum && mix.left[i] == 2.0F * static_cast<float>(i) && mix.right[i] == 0.75F;
    }
    EXPECT_TRUE(isSum);
}

TEST_P(AVAudioMixerNodeBlocksTest, OtherRatesAreConverted)
{
    for (const double rate : {44100.0, 96000.0, 22050.0, 48000.0}) {
        Mix mix(GetParam());
        mix.add(nodeOf<SineUnit>(1000.0, 0.5, rate));
        mix.run(4800);
        mix.run(24000);
        EXPECT_NEAR(decibels(level(mix.left, 1000.0) / 0.5), 0.0, 0.1) << rate;
        EXPECT_NEAR(decibels(level(mix.right, 1000.0) / 0.5), 0.0, 0.1) << rate;
        EXPECT_LT(decibels(level(mix.left, 1100.0) / 0.5), -60.0) << rate;
        EXPECT_LT(decibels(level(mix.left, 1000.0 * 48000.0 / rate + (rate == 48000.0 ? 100.0 : 0.0)) / 0.5),
                  -60.0)
            << rate;
    }
}

TEST_P(AVAudioMixerNodeBlocksTest, ConvertedSoundDoesNotDependOnTheBlockSize)
{
    Mix mix(GetParam());
    Mix reference(512);
    mix.add(nodeOf<SineUnit>(1000.0, 0.5, 44100.0));
    reference.add(nodeOf<SineUnit>(1000.0, 0.5, 44100.0));
    mix.run(12000);
    reference.run(12000);
    float difference = 0.0F;
    for (std::size_t i = 0; i < mix.left.size(); ++i) {
        difference = std::max(difference, std::fabs(mix.left[i] - reference.left[i]));
    }
    EXPECT_LT(difference, 1e-5F);
}

TEST(AVAudioMixerNode, AnEffectOfAnotherRateWorksBetweenTwoMixers)
{
    Mix mix;
    const auto source = nodeOf<SineUnit>(1000.0, 0.25);
    const auto before = std::make_shared<AVAudioMixerNode>();
    const auto effect = nodeOf<DoublingUnit>(96000.0);
    const auto behind = std::make_shared<AVAudioMixerNode>();
    const std::vector<std::shared_ptr<AVAudioNode>> nodes{source, before, effect, behind};
    for (const auto& node : nodes) {
        ASSERT_EQ(mix.engine->attachNode(node), noErr);
    }
    const AVAudioFormat format = effect->outputFormatForBus(0);
    ASSERT_EQ(mix.engine->connect(before, effect, 0, 0, format), noErr);
    ASSERT_EQ(mix.engine->connect(effect, behind, 0, 0, format), noErr);
    ASSERT_EQ(mix.engine->connect(source, before, 0, 0), noErr);
    ASSERT_EQ(mix.engine->connect(behind, mix.engine->mainMixerNode(), 0, 1), noErr);
    EXPECT_EQ(before->outputFormatForBus(0), format);
    EXPECT_EQ(behind->inputFormatForBus(0), format);
    mix.run(4800);
    mix.run(24000);
    EXPECT_NEAR(decibels(level(mix.left, 1000.0) / 0.5), 0.0, 0.1);
}

TEST(AVAudioMixerNode, TheVolumeIsAFactorAndAChangeIsSpreadOverABlock)
{
    Mix mix(4);
    mix.add(nodeOf<CountingUnit>(1.0F));
    mix.engine->mainMixerNode()->setOutputVolume(0.5F);
    mix.run(4);
    EXPECT_THAT(mix.right, testing::ElementsAre(0.5F, 0.5F, 0.5F, 0.5F));
    mix.engine->mainMixerNode()->setOutputVolume(1.0F);
    mix.run(4);
    EXPECT_THAT(mix.right, testing::ElementsAre(0.625F, 0.75F, 0.875F, 1.0F));
    mix.run(2);
    EXPECT_THAT(mix.right, testing::ElementsAre(1.0F, 1.0F));
}

TEST(AVAudioMixerNode, TheVolumeOfAnInstrumentIsAFactor)
{
    Mix mix(4);
    const auto instrument = std::make_shared<AVAudioUnitMIDIInstrument>(std::make_shared<CountingUnit>(1.0F));
    instrument->setVolume(0.25F);
    mix.add(instrument);
    mix.run(2);
    EXPECT_EQ(instrument->volume(), 0.25F);
    EXPECT_THAT(mix.right, testing::ElementsAre(0.25F, 0.25F));
}

TEST(AVAudioMixerNode, TheNextFreeBusIsTheLowestOne)
{
    Mix mix;
    EXPECT_EQ(mix.engine->mainMixerNode()->nextAvailableInputBus(), 1);
    mix.add(nodeOf<CountingUnit>());
    EXPECT_EQ(mix.engine->mainMixerNode()->nextAvailableInputBus(), 2);
    ASSERT_EQ(mix.engine->disconnectNodeInput(mix.engine->mainMixerNode(), 0), noErr);
    EXPECT_EQ(mix.engine->mainMixerNode()->nextAvailableInputBus(), 0);
}

} // namespace

} // namespace volvelle::test
