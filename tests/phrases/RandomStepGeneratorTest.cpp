#include "phrases/RandomStepGenerator.h"

#include "tests/support/ScriptedRandomSource.h"

#include <gtest/gtest.h>

namespace volvelle {
namespace {

using Ranges = std::vector<std::pair<int, int>>;

TEST(RandomStepEvent, ANewStepHasNoPlaceAndNoVelocity)
{
    EXPECT_EQ(RandomStepEvent().index, -1);
    EXPECT_EQ(RandomStepEvent().velocity, 0);
}

TEST(RandomStepGenerator, TheOneDrawIsTheCount)
{
    test::ScriptedRandomSource source({16, 1});
    RandomStepGenerator generator;
    ASSERT_EQ(generator.steps.size(), 16U);
    for (int i = 0; i < 16; ++i) {
        EXPECT_EQ(generator.steps[static_cast<std::size_t>(i)]->index, i);
        EXPECT_EQ(generator.steps[static_cast<std::size_t>(i)]->velocity, 0);
    }
    generator.randomize();
    EXPECT_EQ(generator.steps.size(), 1U);
    EXPECT_EQ(source.ranges, (Ranges{{1, 16}, {1, 16}}));
}

} // namespace
} // namespace volvelle
