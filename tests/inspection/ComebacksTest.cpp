#include "inspection/Comebacks.h"

#include <gtest/gtest.h>

#include <string>

namespace volvelle::test {
namespace {

// Each of so many phrases of a folder picked equally often.
void pickAll(Comebacks& comebacks, const std::string& folder, int phrases, int times)
{
    for (int i = 0; i < phrases * times; ++i) {
        comebacks.add(folder + "/" + std::to_string(i % phrases));
    }
}

TEST(Comebacks, NothingComesBackThatWasNotPickedTwice)
{
    Comebacks comebacks;
    EXPECT_EQ(comebacks.medianPress(), Comebacks::mostPresses);
    pickAll(comebacks, "a", 10, 1);
    EXPECT_EQ(comebacks.medianPress(), Comebacks::mostPresses);
}

TEST(Comebacks, TheOnlyPhraseOfAFolderIsBackAtTheSecondPress)
{
    Comebacks comebacks;
    pickAll(comebacks, "a", 1, 2);
    EXPECT_EQ(comebacks.medianPress(), 2);
}

// As with birthdays: 23 people of 365 days.
TEST(Comebacks, OneFolderIsAsTheDaysOfAYear)
{
    Comebacks comebacks;
    pickAll(comebacks, "a", 365, 1000);
    EXPECT_EQ(comebacks.medianPress(), 23);
}

TEST(Comebacks, SeveralFoldersComeBackSooner)
{
    Comebacks comebacks;
    for (const int size : {110, 120, 130, 121, 122}) {
        pickAll(comebacks, std::to_string(size), size, 1000);
    }
    EXPECT_EQ(comebacks.medianPress(), 7);
}

// At two presses with phrases of two: half of them are back, which is as often as not.
TEST(Comebacks, HalfIsAsOftenAsNot)
{
    Comebacks comebacks;
    comebacks.add("a/1");
    comebacks.add("a/1");
    comebacks.add("a/1");
    comebacks.add("a/2");
    EXPECT_EQ(comebacks.medianPress(), 2);
}

} // namespace
} // namespace volvelle::test
