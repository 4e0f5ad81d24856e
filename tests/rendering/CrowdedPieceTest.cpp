#include "tests/rendering/PieceRead.h"
#include "tests/rendering/RenderedParts.h"
#include "tests/services/audiograph/sequencer/Song.h"

#include <gtest/gtest.h>

namespace volvelle::test {

namespace {

constexpr int organ = 19;
constexpr int many = 20'000; // more messages than a line takes
constexpr double tick = 1.0 / 480.0;

class CrowdedPiece : public RenderedParts {};

// A note that a message for each 20,000th part of a moment comes before the end of.
Song crowded(int status, int data1)
{
    Song song;
    song.message(0.0, 0xC0, organ).note(0.0, 0, 60, 100, 1.0 + tick);
    for (int i = 0; i < many; ++i) {
        song.message(1.0, status, data1, 126 + i % 2);
    }
    return song.length(8.0);
}

void expectSilentAfterTheNote(const Song& song)
{
    const RenderPiece piece = pieceRead(song.file());
    const std::vector<float> sound = rendered(piece, piece.parts(1));
    EXPECT_GT(levelFrom(sound, quarterSecond), audible);
    EXPECT_LT(levelFrom(sound, 10 * quarterSecond), audible);
}

TEST_F(CrowdedPiece, ANoteEndsBehindAnyNumberOfControllersBendsAndPressures)
{
    expectSilentAfterTheNote(crowded(0xB0, 11));
    expectSilentAfterTheNote(crowded(0xE0, 0));
    expectSilentAfterTheNote(crowded(0xD0, 0));
    expectSilentAfterTheNote(crowded(0xA0, 60));
}

TEST_F(CrowdedPiece, APedalIsLiftedBehindAnyNumberOfControllers)
{
    for (const int pedal : {64, 66, 69}) {
        Song song = crowded(0xB0, 11);
        song.message(0.5, 0xB0, pedal, 127).message(1.0 + 2.0 * tick, 0xB0, pedal, 0);
        expectSilentAfterTheNote(song);
    }
}

TEST_F(CrowdedPiece, ANoteEndsBehindAnyNumberOfExclusives)
{
    Song song;
    song.message(0.0, 0xC0, organ).note(0.0, 0, 60, 100, 1.0 + tick);
    for (int i = 0; i < many; ++i) {
        song.exclusive(1.0, {0xF0, 0x7F, 0x7F, 0x04, 0x01, 0x00, 0x7F, 0xF7});
    }
    expectSilentAfterTheNote(song.length(8.0));
}

// Each costs the time of some blocks.
TEST_F(CrowdedPiece, AMomentOfResetsIsOne)
{
    Song song;
    for (int i = 0; i < 4000; ++i) {
        song.exclusive(1.0, {0xF0, 0x7E, 0x7F, 0x09, 0x01, 0xF7});
    }
    song.message(1.0, 0xC0, organ).note(1.0 + tick, 0, 60, 100, 1.0);
    const RenderPiece piece = pieceRead(song.length(8.0).file());
    const std::vector<float> sound = rendered(piece, piece.parts(1));
    EXPECT_LT(levelFrom(sound, quarterSecond), audible);
    EXPECT_GT(levelFrom(sound, 3 * quarterSecond), audible);
    EXPECT_LT(levelFrom(sound, 12 * quarterSecond), audible);
}

TEST_F(CrowdedPiece, OfResetsAmongOthersFourArePerformedInABlockOfTheSynthesizer)
{
    const auto onset = [](int resets) {
        Song song;
        for (int i = 0; i < resets; ++i) {
            song.exclusive(1.0, {0xF0, 0x7E, 0x7F, 0x09, 0x01, 0xF7});
            song.exclusive(1.0, {0xF0, 0x7F, 0x7F, 0x04, 0x01, 0x00, 0x7F, 0xF7});
        }
        song.note(1.0 + tick, 0, 60, 100, 4.0);
        const RenderPiece piece = pieceRead(song.length(8.0).file());
        const std::vector<float> sound = rendered(piece, piece.parts(1));
        const auto isHeard = [](float sample) { return std::fabs(sample) > 0.01F; };
        return std::ranges::find_if(sound, isHeard) - sound.begin();
    };
    const auto blocks = (onset(200) - onset(1)) / 64;
    EXPECT_GE(blocks, 45);
    EXPECT_LE(blocks, 70);
}

} // namespace

} // namespace volvelle::test
