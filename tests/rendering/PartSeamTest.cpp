#include "rendering/PartRendering.h"

#include "tests/rendering/PieceRead.h"
#include "tests/rendering/RenderedParts.h"
#include "tests/services/soundunits/RandomPiece.h"

#include <cmath>
#include <gtest/gtest.h>

namespace volvelle::test {

namespace {

struct PedalDown {
    int pedal;
    int channel;
    double down; // beats
    double up;
};

const std::vector<std::vector<PedalDown>> pedals{
    {{64, 0, 20.0, 24.25}, {66, 1, 20.0, 24.25}},
    {{66, 0, 22.6, 27.0}, {68, 1, 23.1, 26.0}},
    {{64, 1, 23.0, 30.0}, {66, 1, 24.9, 29.0}},
};

// Twenty-two seconds, so that it is cut in the middle; messages of all kinds and notes throughout, pedals
// that are down or come soon where it is cut.
Song pieceOf(unsigned seed)
{
    RandomPiece piece(seed);
    Song song;
    for (double beat = 0.0; beat < 44.0; beat += 2.0) {
        piece.addStates(song, beat, beat + 0.5, 4);
        piece.addNotes(song, beat + 0.5, beat + 1.5);
    }
    for (const auto& [pedal, channel, down, up] : pedals[seed % pedals.size()]) {
        song.message(down, 0xB0 | channel, pedal, 127).message(up, 0xB0 | channel, pedal, 0);
    }
    return song;
}

class PartSeams : public RenderedParts {};

void expectAlike(const std::vector<std::uint8_t>& data)
{
    const RenderPiece piece = pieceRead(data);
    const std::vector<RenderPart> parts = piece.parts(2);
    ASSERT_EQ(parts.size(), 2U);
    const std::vector<float> one = rendered(piece, piece.parts(1));
    const std::vector<float> two = rendered(piece, parts);
    int sounding = 0;
    for (std::size_t begin = 0; begin < one.size(); begin += quarterSecond) {
        const double expected = levelFrom(one, begin);
        const double level = levelFrom(two, begin);
        if (expected > audible || level > audible) {
            ++sounding;
            EXPECT_NEAR(20.0 * std::log10(level / expected), 0.0, 1.0)
                << begin / quarterSecond << " quarters of a second";
        }
    }
    EXPECT_GT(sounding, 20);
}

class PartSeam : public PartSeams, public testing::WithParamInterface<unsigned> {};

INSTANTIATE_TEST_SUITE_P(Seeds, PartSeam, testing::Range(1U, 19U));

} // namespace

TEST_P(PartSeam, APieceInPartsSoundsLikeThePieceInOne)
{
    expectAlike(pieceOf(GetParam()).file());
}

// The swings of chorus and reverb go on across a seam, wherever it lies.
TEST_F(PartSeams, SeamsAnywhereInTheSwingsOfTheEffectsAreNotHeard)
{
    for (const int seconds : {44, 56, 60}) {
        Song song;
        song.message(0.0, 0xC0, 48);
        for (int beat = 0; beat < 2 * seconds; beat += 4) {
            song.note(beat, 0, 60, 100, 3.0);
        }
        expectAlike(song.length(2.0 * seconds).file());
    }
}

// An organ that is held from the first part to the end, for longer than any tail.
TEST_F(PartSeams, AHeldNoteOfTheFirstPartSoundsToItsEnd)
{
    expectAlike(Song().message(0.0, 0xC0, 19).note(1.0, 0, 60, 100, 199.0).file());
}

TEST_F(PartSeams, ANoteThatIsSilentForAWhileComesBack)
{
    Song song;
    song.message(0.0, 0xC0, 19).note(1.0, 0, 60, 100, 99.0);
    expectAlike(song.message(40.0, 0xB0, 11, 0).message(60.0, 0xB0, 11, 100).file());
}

} // namespace volvelle::test
