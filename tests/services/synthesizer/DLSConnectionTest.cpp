#include "services/synthesizer/DLSVoiceSettings.h"
#include "services/synthesizer/SoundFontNumbers.h"
#include "tests/services/synthesizer/Measuring.h"
#include "tests/services/synthesizer/TinyBank.h"
#include "tests/support/ConsoleCapture.h"
#include "tools/sf2dls/DLSWriter.h"

#include <gmock/gmock.h>

#include <cmath>

namespace volvelle::test {

namespace {

using testing::ElementsAre;
using testing::IsEmpty;

DLSConnection connection(std::uint16_t source, std::uint16_t control, std::uint16_t destination, int amount,
                         std::uint16_t transform = 0)
{
    return {source, control, destination, transform, amount * 65536};
}

bool isPlayed(const DLSConnection& one)
{
    return DLSVoiceSettings::of({one}).unknownConnections == 0;
}

// The tiny bank with one articulation for the piano, ready to be played.
class DLSConnectionTest : public testing::Test {
protected:
    std::unique_ptr<Synthesizer> make(const DLSArticulation& articulation)
    {
        DLSFile bank = tinyBank();
        bank.articulations.front() = articulation;
        bank.instruments.back().articulation = DLSRegion::none;
        return drySynthesizer(folder.write("one.dls", writeDLS(bank, "One")));
    }

    static Stereo held(Synthesizer& synthesizer, int key = 84, int velocity = 100)
    {
        synthesizer.noteOn(0, key, velocity);
        return renderFrames(synthesizer, 24000);
    }

    static double loudness(const Stereo& sound) { return level(sound, 12000, 9600); }

    static double heardPitch(const Stereo& sound, double expected)
    {
        return pitch(sound, 12000, 9600, expected).value_or(0.0);
    }

    TemporaryFolder folder;
};

} // namespace

TEST(DLSConnections, OfAllSourcesThoseAPlayerMovesAndTheSwingingAreKnown)
{
    for (int source = 0; source <= 0x110; ++source) {
        const bool isPlayers = source == 0x100 || (source >= 0x80 && source <= 0xFF) ||
                               (source >= 1 && source <= 9) || source == 0;
        // The envelope of the level and the wheel move what is built in; the swinging know no pan.
        const bool isBuiltIn = source == 4 || source == 6;
        const bool isSwinging = source == 1 || source == 5 || source == 9;
        EXPECT_EQ(isPlayed(connection(static_cast<std::uint16_t>(source), 0, DLSDestination::pan, 100)),
                  isPlayers && !isBuiltIn && !isSwinging)
            << source;
    }
}

TEST(DLSConnections, ControllersAreKnownFromTheFirstToTheLast)
{
    for (const auto& [source, number] : {std::pair{0x80, 0}, {0x81, 1}, {0xFE, 126}, {0xFF, 127}}) {
        const auto settings = DLSVoiceSettings::of(
            {connection(static_cast<std::uint16_t>(source), 0, DLSDestination::cutoff, 100)});
        ASSERT_EQ(settings.modulators.size(), 1U) << source;
        EXPECT_EQ(settings.modulators[0].source1, number);
        EXPECT_EQ(settings.modulators[0].flags1, ModulatorSource::controller);
    }
    EXPECT_FALSE(isPlayed(connection(0x7F, 0, DLSDestination::cutoff, 100)));
    EXPECT_FALSE(isPlayed(connection(0x101, 0, DLSDestination::cutoff, 100)));
}

TEST(DLSConnections, ASecondSourceMustBeAPlayersToo)
{
    EXPECT_TRUE(isPlayed(connection(DLSSource::velocity, 0x81, DLSDestination::cutoff, 100)));
    EXPECT_FALSE(isPlayed(connection(DLSSource::velocity, 0x55, DLSDestination::cutoff, 100)));
    EXPECT_FALSE(isPlayed(connection(DLSSource::none, 0x81, DLSDestination::cutoff, 100)));
    const auto settings =
        DLSVoiceSettings::of({connection(DLSSource::velocity, 0xCA, DLSDestination::cutoff, 100,
                                         DLSTransform::controlInverted | DLSTransform::controlBipolar)});
    ASSERT_EQ(settings.modulators.size(), 1U);
    EXPECT_EQ(settings.modulators[0].source2, 74);
    EXPECT_EQ(settings.modulators[0].flags2,
              ModulatorSource::controller | ModulatorSource::inverted | ModulatorSource::bipolar);
}

TEST(DLSConnections, ASwingToAnythingButPitchCutoffAndGainIsNotPlayed)
{
    for (const std::uint16_t source : {DLSSource::lfo, DLSSource::vibrato, DLSSource::modulationEnvelope}) {
        EXPECT_TRUE(isPlayed(connection(source, 0, DLSDestination::pitch, 100)));
        EXPECT_EQ(isPlayed(connection(source, 0, DLSDestination::cutoff, 100)), source != DLSSource::vibrato);
        EXPECT_EQ(isPlayed(connection(source, 0, DLSDestination::gain, 100)), source == DLSSource::lfo);
        EXPECT_FALSE(isPlayed(connection(source, 0, DLSDestination::pan, 100)));
        EXPECT_FALSE(isPlayed(connection(source, 0, 0x7777, 100)));
        EXPECT_FALSE(isPlayed(connection(source, 0x55, DLSDestination::pitch, 100)));
    }
}

TEST(DLSConnections, EachDestinationOfAFixedValueHasItsGenerator)
{
    const std::vector<std::pair<std::uint16_t, int>> table{
        {0x004, 17}, {0x080, 15}, {0x081, 16}, {0x104, 22}, {0x105, 21}, {0x114, 24}, {0x115, 23},
        {0x206, 34}, {0x207, 36}, {0x209, 38}, {0x20A, 37}, {0x20B, 33}, {0x20C, 35}, {0x30A, 26},
        {0x30B, 28}, {0x30D, 30}, {0x30E, 29}, {0x30F, 25}, {0x310, 27}, {0x500, 8},  {0x501, 9}};
    for (const auto& [destination, generator] : table) {
        const auto settings = DLSVoiceSettings::of({connection(0, 0, destination, 250)});
        const bool isSustain = destination == 0x20A || destination == 0x30E;
        const auto found = std::ranges::find(settings.generators, generator, &VoiceGenerator::generator);
        ASSERT_NE(found, settings.generators.end()) << destination;
        EXPECT_EQ(found->value, isSustain ? 750.0 : 250.0) << destination;
        EXPECT_EQ(settings.unknownConnections, 0);
    }
}

TEST(DLSConnections, EachTimeThatAKeyMovesHasItsGenerator)
{
    const std::vector<std::array<int, 3>> table{
        {0x20C, 35, 39}, {0x207, 36, 40}, {0x310, 27, 31}, {0x30B, 28, 32}};
    for (const auto& [destination, time, perKey] : table) {
        const auto settings = DLSVoiceSettings::of(
            {connection(DLSSource::keyNumber, 0, static_cast<std::uint16_t>(destination), 1280)});
        const auto value = [&](int generator) {
            return std::ranges::find(settings.generators, generator, &VoiceGenerator::generator)->value;
        };
        EXPECT_EQ(value(perKey), -10.0) << destination;
        EXPECT_EQ(value(time), -12000.0 + 600.0) << destination;
    }
}

TEST_F(DLSConnectionTest, AFixedGainIsHeard)
{
    const double plain = loudness(held(*make({})));
    EXPECT_NEAR(loudness(held(*make({connection(0, 0, DLSDestination::gain, -60)}))), plain - 6.0, 0.05);
}

TEST_F(DLSConnectionTest, AFixedPitchIsHeard)
{
    const Stereo sound = held(*make({connection(0, 0, DLSDestination::pitch, 100)}));
    EXPECT_NEAR(cents(heardPitch(sound, 1059.0), 1000.0), 100.0, 1.0);
}

TEST_F(DLSConnectionTest, AFixedPanIsHeard)
{
    const Stereo sound = held(*make({connection(0, 0, DLSDestination::pan, -500)}));
    EXPECT_GT(loudness({sound.left, sound.left}), loudness({sound.right, sound.right}) + 30.0);
}

TEST_F(DLSConnectionTest, ASourceMovesItsDestination)
{
    auto synthesizer = make({connection(DLSSource::velocity, 0, DLSDestination::pitch, 1200)});
    const Stereo soft = held(*synthesizer, 84, 1);
    synthesizer->reset();
    const Stereo hard = held(*synthesizer, 84, 127);
    EXPECT_NEAR(cents(heardPitch(soft, 1000.0), 1000.0), 1200.0 / 128.0, 2.0);
    EXPECT_NEAR(cents(heardPitch(hard, 1990.0), 1000.0), 1200.0 * 127.0 / 128.0, 2.0);
}

TEST_F(DLSConnectionTest, AControllerMovesItsDestination)
{
    auto synthesizer = make({connection(0x82, 0, DLSDestination::pitch, 1200)});
    synthesizer->controller(0, 2, 64);
    EXPECT_NEAR(cents(heardPitch(held(*synthesizer), 1414.0), 1000.0), 600.0, 2.0);
}

TEST_F(DLSConnectionTest, ASecondSourceHoldsTheFirstBack)
{
    auto synthesizer = make({connection(DLSSource::velocity, 0x81, DLSDestination::pitch, 1200)});
    EXPECT_NEAR(cents(heardPitch(held(*synthesizer, 84, 127), 1000.0), 1000.0), 0.0, 2.0);
    synthesizer->reset();
    synthesizer->controller(0, 1, 64);
    EXPECT_NEAR(cents(heardPitch(held(*synthesizer, 84, 127), 1410.0), 1000.0), 600.0 * 127.0 / 128.0, 2.0);
}

TEST_F(DLSConnectionTest, WhatIsNotPlayedIsCountedInOneLine)
{
    ConsoleCapture capture;
    make({connection(DLSSource::lfo, 0, DLSDestination::pan, 100), connection(0x55, 0, 0x777, 1)});
    EXPECT_THAT(capture.take(), ElementsAre("The sound bank has 2 connections that are not played."));
    make({connection(DLSSource::lfo, 0, DLSDestination::pitch, 100)});
    EXPECT_THAT(capture.take(), IsEmpty());
}

TEST_F(DLSConnectionTest, AWaveWithoutAFormatIsSilentAndTheOthersSound)
{
    DLSFile bank = tinyBank();
    bank.waves.push_back(bank.waves.front());
    bank.instruments.front().regions.front().wave = 1;
    std::vector<std::uint8_t> bytes = writeDLS(bank, "Two");
    const std::size_t first = placeOf(bytes, "fmt ");
    const std::size_t second = placeOf(bytes, "fmt ", first + 4);
    ASSERT_LT(second, bytes.size());
    bytes[second] = 'x';
    auto synthesizer = drySynthesizer(folder.write("two.dls", bytes));
    ASSERT_TRUE(synthesizer);
    EXPECT_TRUE(isSilent(held(*synthesizer)));
    synthesizer->noteOn(9, 40, 100);
    EXPECT_FALSE(isSilent(renderFrames(*synthesizer, 4800)));
}

} // namespace volvelle::test
