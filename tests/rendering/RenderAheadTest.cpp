#include "rendering/RenderAhead.h"

#include "base/Paths.h"
#include "services/musicsequence/MusicSequence.h"
#include "tests/rendering/PieceRead.h"
#include "tests/rendering/SmallMusic.h"
#include "tests/support/ProjectFolders.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <array>
#include <chrono>
#include <limits>
#include <thread>

namespace volvelle::test {

namespace {

using Block = std::array<float, PartRendering::blockFrames>;

class RenderAheadTest : public testing::Test {
protected:
    static std::unique_ptr<PartRendering> rendering(int blocks = 24)
    {
        setResourcesFolder(buildFolder() / "resources");
        RenderPart part;
        part.endBlock = blocks;
        part.endBeats = std::numeric_limits<double>::infinity();
        auto made = PartRendering::make(pieceRead(smallMusic()), part, std::nullopt);
        EXPECT_TRUE(made) << made.error();
        return *std::move(made);
    }

    static std::vector<float> all(RenderAhead& ahead)
    {
        std::vector<float> sound;
        Block left{};
        Block right{};
        while (ahead.addBlock(left.data(), right.data())) {
            sound.insert(sound.end(), left.begin(), left.end());
            sound.insert(sound.end(), right.begin(), right.end());
            left = {};
            right = {};
        }
        return sound;
    }
};

} // namespace

TEST_F(RenderAheadTest, GivesTheSameBlocksOnAThreadAndWithout)
{
    RenderAhead withThread(rendering(), true);
    RenderAhead without(rendering(), false);
    const std::vector<float> sound = all(withThread);
    EXPECT_GT(sound.size(), std::size_t{2} * 24 * PartRendering::blockFrames);
    EXPECT_GT(*std::ranges::max_element(sound), 0.01F);
    EXPECT_EQ(all(without), sound);
}

TEST_F(RenderAheadTest, AddsToWhatStandsThereAndNothingBehindTheEnd)
{
    RenderAhead one(rendering(), true);
    RenderAhead other(rendering(), true);
    Block once{};
    Block twice{};
    Block right{};
    ASSERT_TRUE(one.addBlock(once.data(), right.data()));
    twice = once;
    ASSERT_TRUE(other.addBlock(twice.data(), right.data()));
    for (std::size_t i = 0; i < once.size(); ++i) {
        EXPECT_EQ(twice[i], 2.0F * once[i]);
    }
    all(one);
    EXPECT_FALSE(one.addBlock(once.data(), once.data()));
    const Block before = once;
    EXPECT_FALSE(one.addBlock(once.data(), once.data()));
    EXPECT_EQ(once, before);
}

TEST_F(RenderAheadTest, ABankThatIsNoneIsOneLine)
{
    EXPECT_EQ(PartRendering::make(pieceRead(smallMusic()), {}, "nobank.sf2").error(),
              "The sound bank 'nobank.sf2' could not be loaded.");
}

TEST_F(RenderAheadTest, EndsEarlyWhereTheRestIsNotWanted)
{
    Block left{};
    Block right{};
    {
        RenderAhead ahead(rendering(), true);
        EXPECT_TRUE(ahead.addBlock(left.data(), right.data()));
    }
    {
        const RenderAhead never(rendering(), true);
    }
}

TEST_F(RenderAheadTest, WaitsWhereItKeepsEnough)
{
    constexpr std::size_t most = 2 * RenderAhead::blocksAtOnce;
    RenderAhead ahead(rendering(1000), true, most);
    while (ahead.blocksAhead() < most) {
        std::this_thread::yield();
    }
    std::this_thread::sleep_for(std::chrono::milliseconds(100));
    EXPECT_LE(ahead.blocksAhead(), most + RenderAhead::blocksAtOnce);
    RenderAhead without(rendering(1000), false);
    EXPECT_EQ(without.blocksAhead(), 0U);
    EXPECT_EQ(all(ahead), all(without));
}

TEST_F(RenderAheadTest, EndsEarlyWhereItWaits)
{
    RenderAhead ahead(rendering(1000), true, 0);
    while (ahead.blocksAhead() == 0) {
        std::this_thread::yield();
    }
}

TEST_F(RenderAheadTest, KeepsFiveMinutesAtMost)
{
    EXPECT_EQ(RenderAhead::mostAhead, std::size_t{300} * 48000 / 512);
}

} // namespace volvelle::test
