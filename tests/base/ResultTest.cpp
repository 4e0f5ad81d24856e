#include "base/Result.h"

#include <gtest/gtest.h>

#include <memory>
#include <string>
#include <utility>
#include <vector>

namespace volvelle {
namespace {

constexpr const char* oddSentence = "The number is odd.";

Result<int> halfOf(int number)
{
    if (number % 2 != 0) {
        return failure(oddSentence);
    }
    return number / 2;
}

Result<> refuseOdd(int number)
{
    if (const Result<int> half = halfOf(number); !half) {
        return failure(half.error());
    }
    return {};
}

struct Animal {
    virtual ~Animal() = default;

    virtual int legs() const { return 4; }
};

struct Bird : Animal {
    int legs() const override { return 2; }
};

Result<std::unique_ptr<Animal>> bird()
{
    return std::make_unique<Bird>();
}

TEST(Result, HoldsAValueAndNoSentence)
{
    const Result<int> half = halfOf(6);
    ASSERT_TRUE(half);
    EXPECT_EQ(*half, 3);
    EXPECT_EQ(half.error(), "");
}

TEST(Result, HoldsASentenceAndNoValue)
{
    const Result<int> half = halfOf(7);
    EXPECT_FALSE(half);
    EXPECT_EQ(half.error(), oddSentence);
}

TEST(Result, WithoutAValueTellsWhetherAllWasDone)
{
    EXPECT_TRUE(refuseOdd(6));
    EXPECT_EQ(refuseOdd(6).error(), "");
    EXPECT_FALSE(refuseOdd(7));
    EXPECT_EQ(refuseOdd(7).error(), oddSentence);
}

TEST(Result, OfTextTellsTheTextFromTheSentence)
{
    const Result<std::string> name = std::string("Fugue");
    const Result<std::string> none = failure("It has no name.");
    ASSERT_TRUE(name);
    EXPECT_EQ(*name, "Fugue");
    EXPECT_EQ(name->size(), 5U);
    EXPECT_FALSE(none);
    EXPECT_EQ(none.error(), "It has no name.");
}

TEST(Result, FailsWithAnEmptySentenceToo)
{
    EXPECT_FALSE(Result<>(failure("")));
    EXPECT_FALSE(Result<int>(failure("")));
}

TEST(Result, GivesItsValueAway)
{
    Result<std::vector<int>> numbers = std::vector{1, 2, 3};
    numbers->push_back(4);
    const std::vector<int> taken = *std::move(numbers);
    EXPECT_EQ(taken, (std::vector{1, 2, 3, 4}));
}

TEST(Result, TakesWhatConvertsToItsValue)
{
    const Result<std::unique_ptr<Animal>> animal = bird();
    ASSERT_TRUE(animal);
    EXPECT_EQ((*animal)->legs(), 2);
}

TEST(ResultDeathTest, AskedForAValueThatItHasNotStopsWithTheSentence)
{
    Result<int> half = halfOf(7);
    const Result<std::string> none = failure("It has no name.");
    EXPECT_DEATH(*half, "^The number is odd\\.\n$");
    EXPECT_DEATH(*std::move(half), "^The number is odd\\.\n$");
    EXPECT_DEATH(static_cast<void>(none->size()), "^It has no name\\.\n$");
}

} // namespace
} // namespace volvelle
