#include "tests/services/soundunits/RandomPiece.h"
#include "tests/services/soundunits/SynthStudio.h"

#include <algorithm>
#include <cmath>
#include <gtest/gtest.h>
#include <random>

namespace volvelle::test {

namespace {

constexpr int blocksOfFourSeconds = 375;
constexpr float audible = 1.0e-3F;

class ChannelTruth : public testing::TestWithParam<unsigned> {};

INSTANTIATE_TEST_SUITE_P(Seeds, ChannelTruth, testing::Range(1U, 41U));

// What a voice played before leaves a trace in the first 64 frames of its next note, which begins at one of
// the library's own blocks; a quarter of a beat has 6,000 frames.
float differenceBehindOnsets(const std::vector<float>& one, const std::vector<float>& other)
{
    constexpr std::size_t onset = 6000;
    constexpr std::size_t traced = 256;
    float greatest = 0.0F;
    const std::size_t side = one.size() / 2;
    for (std::size_t i = 0; i < one.size(); ++i) {
        if (i % side % onset >= traced) {
            greatest = std::max(greatest, std::fabs(one[i] - other.at(i)));
        }
    }
    return greatest;
}

// Four seconds of messages, and then notes.
Song pieceOf(unsigned seed)
{
    RandomPiece piece(seed);
    Song song;
    piece.addStates(song, 0.0, 7.5, 60);
    piece.addNotes(song, 8.0, 10.0);
    piece.addStates(song, 10.0, 10.5, 10);
    piece.addNotes(song, 10.5, 11.5);
    return song;
}

TEST_P(ChannelTruth, ASeekSoundsAsIfAllBeforeHadBeenPlayed)
{
    SynthStudio through;
    through.load(pieceOf(GetParam()));
    through.start();
    through.run(blocksOfFourSeconds);
    const std::vector<float> expected = through.run(200);

    SynthStudio sought;
    sought.load(pieceOf(GetParam()));
    sought.start(8.0);
    EXPECT_LE(greatestDifference(sought.run(200), expected), 1.0e-5F);
    EXPECT_GT(loudest(expected), audible);
}

// Notes of few keys, before and after beat 8; those before have ended by beat 10.
Song overlappingKeys(unsigned seed)
{
    std::mt19937 random(seed);
    const auto eighths = [&](int first, int count) {
        return 0.125 * (first + static_cast<int>(random() % static_cast<unsigned>(count)));
    };
    Song song;
    song.message(0.0, 0xC0, 19);
    for (int key = 60; key < 64; ++key) {
        for (int i = 0; i < 2; ++i) {
            const double earlier = eighths(48, 16);
            song.note(earlier, 0, key, 100, eighths(64, 16) - earlier);
            const double later = eighths(64, 12);
            song.note(later, 0, key, 100, eighths(96, 32) - later);
        }
    }
    return song.note(8.0, 0, 36, 100, 8.0);
}

TEST_P(ChannelTruth, ASeekEndsTheKeysThatPlayingThroughEnds)
{
    const auto heardFrom = [](double beats) {
        SynthStudio studio;
        studio.load(overlappingKeys(GetParam()));
        studio.start(beats);
        studio.run(static_cast<int>((11.0 - beats) * 24000.0 / SynthStudio::blockFrames));
        return studio.run(40);
    };
    const std::vector<float> expected = heardFrom(0.0);
    EXPECT_LE(greatestDifference(heardFrom(8.0), expected), loudest(expected) * 0.1F);
    EXPECT_GT(loudest(expected), audible);
}

TEST_P(ChannelTruth, ASeekBackFromTheEndSoundsTheSame)
{
    SynthStudio studio;
    studio.load(pieceOf(GetParam()));
    studio.start(8.0);
    const std::vector<float> expected = studio.run(200);
    studio.run(4 * blocksOfFourSeconds);
    studio.sequencer->setCurrentPositionInBeats(8.0);
    EXPECT_LE(differenceBehindOnsets(studio.run(200), expected), loudest(expected) * 0.04F);
}

TEST_P(ChannelTruth, APieceLeavesNothingToTheNext)
{
    Song song;
    RandomPiece(GetParam() + 1000).addNotes(song, 0.0, 2.0);
    SynthStudio alone;
    alone.load(song);
    alone.start();
    const std::vector<float> expected = alone.run(150);

    SynthStudio studio;
    studio.load(pieceOf(GetParam()));
    studio.start();
    studio.run(2 * blocksOfFourSeconds);
    studio.sequencer->stop();
    studio.run(2 * blocksOfFourSeconds);
    studio.load(song);
    studio.start();
    EXPECT_LE(differenceBehindOnsets(studio.run(150), expected), loudest(expected) * 0.02F);
    EXPECT_GT(loudest(expected), audible);
}

// How often a sound rises through 0 on the left.
int crossings(const std::vector<float>& sound)
{
    int count = 0;
    for (std::size_t i = 1; i < sound.size() / 2; ++i) {
        count += sound[i - 1] < 0.0F && sound[i] >= 0.0F ? 1 : 0;
    }
    return count;
}

// The tuning of a scale: C a quarter tone up, the others as they are.
Song tunedScale(int cents)
{
    std::vector<std::uint8_t> scale{0xF0, 0x7F, 0x7F, 0x08, 0x08, 0x03, 0x7F, 0x7F};
    scale.resize(20, 0x40);
    scale[8] = static_cast<std::uint8_t>(0x40 + cents);
    scale.push_back(0xF7);
    return Song().exclusive(0.5, scale).note(4.0, 0, 60, 100, 2.0);
}

TEST(ChannelTruthOfTunings, AScaleThatIsTunedBeforeASeekIsInForceAfterItAtEachRate)
{
    for (const double rate : {44'100.0, 48'000.0}) {
        const auto heardAt = [rate](int cents, bool seeks) {
            SynthStudio studio(std::nullopt, rate);
            studio.load(tunedScale(cents));
            studio.start();
            studio.run(seeks ? 1 : 188);
            if (seeks) {
                studio.sequencer->setCurrentPositionInBeats(4.0);
            }
            studio.run(2);
            return studio.run(100);
        };
        const std::vector<float> played = heardAt(50, false);
        EXPECT_GT(loudest(played), 0.01F);
        EXPECT_NEAR(crossings(heardAt(50, true)), crossings(played), 2) << rate;
        EXPECT_GT(crossings(played), crossings(heardAt(0, false)) + 4) << rate;
        EXPECT_GT(crossings(heardAt(50, true)), crossings(heardAt(0, true)) + 4) << rate;
    }
}

TEST(ChannelTruthOfNodes, AnInstrumentOfAStoppedEngineSoundsInARunningOne)
{
    SynthStudio first;
    SynthStudio second;
    first.run(2);
    first.engine->stop();
    ASSERT_EQ(first.engine->detachNode(first.instrument), noErr);
    ASSERT_EQ(second.engine->detachNode(second.instrument), noErr);
    ASSERT_EQ(second.engine->attachNode(first.instrument), noErr);
    ASSERT_EQ(second.engine->connect(first.instrument, second.engine->mainMixerNode(), 0, 0), noErr);
    second.run(2);
    ASSERT_EQ(first.instrument->auAudioUnit()->musicDeviceMIDIEvent(0x90, 60, 100, 0), noErr);
    EXPECT_GT(loudest(second.run(30)), 0.01F);
    second.instrument = first.instrument;
    second.load(Song().note(0.0, 0, 60, 100, 1.0));
    second.run(400);
    second.start();
    EXPECT_GT(loudest(second.run(30)), 0.01F);
}

} // namespace

} // namespace volvelle::test
