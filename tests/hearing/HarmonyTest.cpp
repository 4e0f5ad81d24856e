#include "hearing/Harmony.h"

#include <gtest/gtest.h>

namespace volvelle {
namespace {

TEST(Harmony, AChordSoundsFromItsPositionToTheNextOne)
{
    const Harmony harmony({{4, 1, 0}, {16, 2, 1}});
    EXPECT_EQ(harmony.chordAt(3), nullptr);
    EXPECT_EQ(harmony.chordAt(4)->root, 0);
    EXPECT_EQ(harmony.chordAt(15)->root, 0);
    EXPECT_EQ(harmony.chordAt(16)->root, 1);
    EXPECT_EQ(harmony.chordAt(63)->root, 1);
    EXPECT_EQ(harmony.chordAt(64), nullptr);
    EXPECT_EQ(harmony.chordAt(-1), nullptr);
    EXPECT_EQ(harmony.endOf(0), 16);
    EXPECT_EQ(harmony.endOf(1), 64);
}

TEST(Harmony, AChordFromTheEndOnIsLeftOut)
{
    EXPECT_EQ(Harmony({{0, 1, 0}, {64, 2, 1}}).chords, (std::vector<HeardChord>{{0, 1, 0}}));
    EXPECT_EQ(Harmony({}).chordAt(0), nullptr);
}

} // namespace
} // namespace volvelle
