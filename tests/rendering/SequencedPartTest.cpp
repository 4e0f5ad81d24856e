#include "rendering/PartRendering.h"

#include "base/Paths.h"
#include "tests/rendering/PieceRead.h"
#include "tests/rendering/SmallMusic.h"
#include "tests/services/audiograph/sequencer/Song.h"
#include "tests/support/ProjectFolders.h"

#include <algorithm>
#include <array>
#include <cmath>
#include <gtest/gtest.h>

namespace volvelle::test {

namespace {

constexpr std::size_t quarterSecond = 12000; // frames
constexpr double audible = 1.0e-3;           // -60 dBFS

std::vector<float> rendered(const std::vector<std::uint8_t>& data, bool isSequenced)
{
    const RenderPiece piece = pieceRead(data, isSequenced);
    std::vector<float> mix;
    std::array<float, RenderPart::blockFrames> left{};
    std::array<float, RenderPart::blockFrames> right{};
    const auto made = PartRendering::make(piece, piece.parts(1).front(), std::nullopt);
    EXPECT_TRUE(made) << made.error();
    while (made && (*made)->renderBlock(left.data(), right.data())) {
        std::ranges::transform(left, right, std::back_inserter(mix), std::plus());
    }
    return mix;
}

double levelFrom(const std::vector<float>& sound, std::size_t begin)
{
    double sum = 0.0;
    for (std::size_t i = begin; i < std::min(begin + quarterSecond, sound.size()); ++i) {
        sum += static_cast<double>(sound[i]) * static_cast<double>(sound[i]);
    }
    return std::sqrt(sum / quarterSecond);
}

class SequencedPart : public testing::Test {
protected:
    SequencedPart() { setResourcesFolder(buildFolder() / "resources"); }

    ~SequencedPart() override { setResourcesFolder(std::nullopt); }

    // Each quarter of a second as loud as by the platform's sequencer, a block later.
    static void expectTheSameSound(const std::vector<std::uint8_t>& data)
    {
        const auto expected = rendered(data, false);
        auto sound = rendered(data, true);
        sound.erase(sound.begin(), sound.begin() + RenderPart::blockFrames);
        EXPECT_NEAR(static_cast<double>(sound.size()), static_cast<double>(expected.size()),
                    4.0 * quarterSecond);
        int compared = 0;
        for (std::size_t begin = 0; begin < expected.size(); begin += quarterSecond) {
            const double level = levelFrom(expected, begin);
            if (level > audible) {
                ++compared;
                EXPECT_NEAR(20.0 * std::log10(levelFrom(sound, begin) / level), 0.0, 1.0) << begin;
            }
        }
        EXPECT_GT(compared, 20);
    }
};

TEST_F(SequencedPart, ItSoundsAsByThePlatformsSequencer)
{
    const std::string file = longMusic(40);
    expectTheSameSound({file.begin(), file.end()});
}

TEST_F(SequencedPart, ItSoundsTheSameThroughChangesOfTempo)
{
    Song song;
    for (int i = 0; i < 60; ++i) {
        song.note(i / 4.0, i % 4, 48 + i * 5 % 24, 90, 0.5).message(i / 4.0, 0xB0 | i % 4, 10, i * 2);
        song.note(i / 4.0, 9, 36 + i % 8, 100, 0.1);
    }
    song.message(0.0, 0xC0, 19).message(0.0, 0xC1, 48).message(0.0, 0xC2, 11).message(0.0, 0xC3, 73);
    song.message(2.0, 0xE0, 0, 80)
        .message(4.0, 0xE0, 0, 64)
        .message(6.0, 0xB1, 64, 127)
        .message(8.0, 0xB1, 64, 0);
    expectTheSameSound(song.tempo(0.0, 140.0).tempo(5.0, 90.0).tempo(9.5, 121.5).file());
}

TEST_F(SequencedPart, ItLastsAsLongAsItsTempoLets)
{
    const auto blocks = [](Song song) { return pieceRead(song.file(), true).parts(2).front().endBlock; };
    EXPECT_EQ(blocks(Song().note(0.0, 0, 60, 1, 8.0)), 1 + 96'000 * 2 / 512);
    EXPECT_EQ(blocks(Song().note(0.0, 0, 60, 1, 8.0).tempo(0.0, 5000.0)), 1 + (19'200 + 511) / 512);
    EXPECT_EQ(blocks(Song().note(0.0, 0, 60, 1, 1.0).tempo(0.0, 6.0)), 1 + (240'000 + 511) / 512);
    EXPECT_TRUE(pieceRead(Song().file(), true).parts(2).front().isSequenced);
}

TEST_F(SequencedPart, WhatIsNoFileIsAFailure)
{
    for (const bool isSequenced : {false, true}) {
        EXPECT_NE(RenderPiece().read({1, 2, 3}, isSequenced), noErr);
    }
}

} // namespace

} // namespace volvelle::test
