#include "tests/services/soundunits/RandomPiece.h"
#include "tests/services/soundunits/SynthStudio.h"

#include <algorithm>
#include <cmath>
#include <gtest/gtest.h>

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

TEST_P(ChannelTruth, ASeekBackFromTheEndSoundsTheSame)
{
    SynthStudio studio;
    studio.load(pieceOf(GetParam()));
    studio.start(8.0);
    const std::vector<float> expected = studio.run(200);
    studio.run(4 * blocksOfFourSeconds);
    studio.sequencer->setCurrentPositionInBeats(8.0);
    EXPECT_LE(differenceBehindOnsets(studio.run(200), expected), loudest(expected) * 0.02F);
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

} // namespace

} // namespace volvelle::test
