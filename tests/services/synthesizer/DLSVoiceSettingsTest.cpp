#include "services/synthesizer/DLSVoiceSettings.h"

#include "services/synthesizer/SoundFontNumbers.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <cstdint>
#include <limits>
#include <optional>

namespace volvelle::test {

namespace {

std::optional<double> value(const std::vector<VoiceGenerator>& generators, int generator)
{
    const auto found = std::ranges::find(generators, generator, &VoiceGenerator::generator);
    return found == generators.end() ? std::nullopt : std::optional(found->value);
}

DLSConnection fixed(std::uint16_t destination, int amount)
{
    return {DLSSource::none, DLSSource::none, destination, 0, amount * 65536};
}

} // namespace

TEST(DLSVoiceSettings, OfABareVoiceHaveSlowOscillatorsAndNoModulators)
{
    const DLSVoiceSettings settings;
    EXPECT_EQ(value(settings.generators, Generator::lfoFrequency), -851.0);
    EXPECT_EQ(value(settings.generators, Generator::vibratoDelay), -7973.0);
    EXPECT_EQ(settings.scaleTuning, 100.0);
    EXPECT_TRUE(settings.modulators.empty());
}

TEST(DLSVoiceSettings, TakeFixedValues)
{
    const auto settings = DLSVoiceSettings::of(
        {fixed(DLSDestination::volumeAttack, -3000), fixed(DLSDestination::volumeSustain, 400),
         fixed(DLSDestination::pan, -250), fixed(DLSDestination::gain, -60), fixed(DLSDestination::pitch, 30),
         fixed(DLSDestination::cutoff, 9000)});
    EXPECT_EQ(value(settings.generators, Generator::volumeAttack), -3000.0);
    EXPECT_EQ(value(settings.generators, Generator::volumeSustain), 600.0);
    EXPECT_EQ(value(settings.generators, Generator::pan), -250.0);
    EXPECT_EQ(value(settings.generators, Generator::cutoff), 9000.0);
    EXPECT_EQ(settings.attenuation, 60.0);
    EXPECT_EQ(settings.pitch, 30.0);
    EXPECT_EQ(settings.unknownConnections, 0);
}

TEST(DLSVoiceSettings, TakeTheLeastScaleOfATimeForNoTime)
{
    const auto settings = DLSVoiceSettings::of(
        {{0, 0, DLSDestination::volumeDecay, 0, std::numeric_limits<std::int32_t>::min()}});
    EXPECT_EQ(value(settings.generators, Generator::volumeDecay), -12000.0);
}

TEST(DLSVoiceSettings, TurnKeyTrackingAboutTheMiddleKey)
{
    const auto settings =
        DLSVoiceSettings::of({{DLSSource::keyNumber, 0, DLSDestination::volumeDecay, 0, -128 * 10 * 65536},
                              fixed(DLSDestination::volumeDecay, 1600)});
    EXPECT_EQ(value(settings.generators, Generator::keyToVolumeDecay), 10.0);
    EXPECT_EQ(value(settings.generators, Generator::volumeDecay), 1000.0);
}

TEST(DLSVoiceSettings, MakeModulatorsOfControlledSwings)
{
    const auto settings = DLSVoiceSettings::of(
        {{DLSSource::vibrato, DLSSource::controller1, DLSDestination::pitch, 0, 50 * 65536},
         {DLSSource::velocity, 0, DLSDestination::gain,
          DLSTransform::sourceInverted | (1 << DLSTransform::sourceCurveShift), -960 * 65536}});
    ASSERT_EQ(settings.modulators.size(), 2U);
    EXPECT_EQ(settings.modulators[0].source1, 1);
    EXPECT_EQ(settings.modulators[0].flags1, ModulatorSource::controller);
    EXPECT_EQ(settings.modulators[0].generator, Generator::vibratoToPitch);
    EXPECT_EQ(settings.modulators[0].amount, 50.0);
    EXPECT_EQ(settings.modulators[1].flags1, ModulatorSource::inverted | 4);
    EXPECT_EQ(settings.modulators[1].generator, Generator::attenuation);
    EXPECT_EQ(settings.modulators[1].amount, 960.0);
}

TEST(DLSVoiceSettings, CountWhatTheyCannotPlay)
{
    DLSArticulation many(40, {DLSSource::velocity, 0, DLSDestination::cutoff, 0, 65536});
    many.push_back({0x55, 0, DLSDestination::cutoff, 0, 65536});
    many.push_back(fixed(0x7777, 1));
    const auto settings = DLSVoiceSettings::of(many);
    EXPECT_EQ(settings.modulators.size(), DLSVoiceSettings::maximumModulators);
    EXPECT_EQ(settings.unknownConnections, 10);
}

TEST(DLSVoiceSettings, OfARegionGoBeforeThoseOfItsWave)
{
    DLSWave wave;
    wave.tuning = DLSTuning{60, 10, 0, DLSLoop{false, 40000, 100}};
    DLSRegion region;
    EXPECT_EQ(value(regionGenerators(region, wave, {}), Generator::fineTune), 0.0);
    region.tuning = DLSTuning{72, 25, -30 * 65536, DLSLoop{true, 100000, 200}};
    region.keyGroup = 3;
    const auto generators = regionGenerators(region, wave, {});
    EXPECT_EQ(value(generators, Generator::rootKey), 72.0);
    EXPECT_EQ(value(generators, Generator::fineTune), 15.0);
    EXPECT_EQ(value(generators, Generator::attenuation), 30.0);
    EXPECT_EQ(value(generators, Generator::exclusiveClass), 3.0);
    EXPECT_EQ(value(generators, Generator::sampleModes), 3.0);
    EXPECT_EQ(value(generators, Generator::loopStartCoarseOffset), 1.0);
    EXPECT_EQ(value(generators, Generator::loopStartOffset), 60000.0 - 32768.0);
    EXPECT_EQ(value(generators, Generator::loopEndOffset), 60100.0 - 32768.0);
}

TEST(DLSVoiceSettings, NeverRaiseAWaveByMoreThanElevenOctaves)
{
    DLSWave wave;
    DLSRegion region;
    region.tuning = DLSTuning{0, 21504, 0, DLSLoop{false, 0, 2}};
    EXPECT_EQ(value(regionGenerators(region, wave, {}), Generator::fineTune), 13200.0 - 12700.0);
    const auto swinging = DLSVoiceSettings::of({{DLSSource::lfo, 0, DLSDestination::pitch, 0, 1200 * 65536}});
    EXPECT_EQ(value(regionGenerators(region, wave, swinging), Generator::fineTune), 12000.0 - 12700.0);
    region.highKey = 12;
    region.tuning->fineTune = 300;
    EXPECT_EQ(value(regionGenerators(region, wave, swinging), Generator::fineTune), 300.0);
}

} // namespace volvelle::test
