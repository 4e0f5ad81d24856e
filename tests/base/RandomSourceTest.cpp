#include "base/RandomSource.h"
#include "tests/support/ScriptedRandomSource.h"

#include <gtest/gtest.h>

#include <array>

namespace volvelle {
namespace {

TEST(RandomSource, TheSystemsDrawsReachBothEndsAndNothingBeyond)
{
    SystemRandomSource source(1);
    std::array<int, 13> counts{};
    for (int i = 0; i < 13000; ++i) {
        const int number = source.draw(-6, 6);
        ASSERT_GE(number, -6);
        ASSERT_LE(number, 6);
        ++counts.at(static_cast<std::size_t>(number + 6));
    }
    for (const int count : counts) {
        EXPECT_GT(count, 700);
        EXPECT_LT(count, 1300);
    }
}

TEST(RandomSource, ASeedGivesItsNumbersAgain)
{
    SystemRandomSource one(5);
    SystemRandomSource same(5);
    SystemRandomSource other(6);
    int differences = 0;
    for (int i = 0; i < 100; ++i) {
        const int number = one.draw(0, 1000000);
        EXPECT_EQ(same.draw(0, 1000000), number);
        differences += other.draw(0, 1000000) == number ? 0 : 1;
    }
    EXPECT_GT(differences, 90);
}

TEST(RandomSource, ATestsSourceAnswersInItsPlaceAndIsTakenBack)
{
    RandomSource* before = setRandomSource(nullptr);
    ASSERT_NE(before, nullptr);
    setRandomSource(before);
    {
        test::ScriptedRandomSource script({3, 7});
        EXPECT_EQ(randomInteger(0, 9), 3);
        EXPECT_EQ(randomInteger(7, 7), 7);
        EXPECT_EQ(script.ranges, (std::vector<std::pair<int, int>>{{0, 9}, {7, 7}}));
    }
    EXPECT_EQ(setRandomSource(before), before);
}

TEST(RandomSourceDeathTest, AnInvertedRangeStops)
{
    EXPECT_DEATH(randomInteger(1, 0), "^Range requires lowerBound <= upperBound\n$");
}

} // namespace
} // namespace volvelle
