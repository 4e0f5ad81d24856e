#include "cli/CommandOutput.h"

#include <gtest/gtest.h>

namespace volvelle::test {

TEST(CommandOutput, ABarShowsHowMuchIsDone)
{
    EXPECT_EQ(progressBar(0, 10), "[                              ] 0 of 10");
    EXPECT_EQ(progressBar(3, 10), "[#########                     ] 3 of 10");
    EXPECT_EQ(progressBar(10, 10), "[##############################] 10 of 10");
    EXPECT_EQ(progressBar(2'000'000'000, 2'000'000'001),
              "[############################# ] 2000000000 of 2000000001");
}

} // namespace volvelle::test
