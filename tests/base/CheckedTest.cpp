#include "base/Checked.h"

#include <gtest/gtest.h>

#include <cstdint>
#include <limits>
#include <vector>

namespace volvelle {
namespace {

TEST(Checked, SumsThatFitAreTheirSums)
{
    EXPECT_EQ(checkedAdd<std::uint8_t>(200, 55), 255);
    EXPECT_EQ(checkedSubtract<int>(3, 5), -2);
    EXPECT_EQ(checkedMultiply<std::int64_t>(1LL << 31, 2), 1LL << 32);
}

TEST(CheckedDeathTest, ArithmeticThatDoesNotFitStops)
{
    EXPECT_DEATH(checkedAdd<std::uint8_t>(200, 56), "^Arithmetic overflow\n$");
    EXPECT_DEATH(checkedSubtract<std::uint16_t>(0, 1), "^Arithmetic overflow\n$");
    EXPECT_DEATH(checkedMultiply<int>(1 << 20, 1 << 20), "^Arithmetic overflow\n$");
}

TEST(Checked, ConversionsTruncateTowardZero)
{
    EXPECT_EQ(checkedCast<std::uint32_t>(-0.5), 0U);
    EXPECT_EQ(checkedCast<int>(-2.9), -2);
    EXPECT_EQ(checkedCast<std::uint8_t>(255.99), 255);
    EXPECT_EQ(checkedCast<std::int64_t>(-9223372036854775808.0), std::numeric_limits<std::int64_t>::min());
    EXPECT_EQ(checkedCast<std::uint8_t>(255), 255);
}

TEST(CheckedDeathTest, ConversionsThatDoNotFitStop)
{
    constexpr const char* message = "^Not enough bits to represent the passed value\n$";
    EXPECT_DEATH(checkedCast<std::uint32_t>(-1.0), message);
    EXPECT_DEATH(checkedCast<std::uint8_t>(256.0), message);
    EXPECT_DEATH(checkedCast<std::int64_t>(9223372036854775808.0), message);
    EXPECT_DEATH(checkedCast<int>(std::numeric_limits<double>::quiet_NaN()), message);
    EXPECT_DEATH(checkedCast<int>(std::numeric_limits<double>::infinity()), message);
    EXPECT_DEATH(checkedCast<std::uint8_t>(-1), message);
    EXPECT_DEATH(checkedCast<std::uint8_t>(256), message);
}

TEST(Checked, ARangeHoldsItsLowerAndNotItsUpperEnd)
{
    std::vector<int> seen;
    for (const int i : checkedRange(2, 5)) {
        seen.push_back(i);
    }
    EXPECT_EQ(seen, (std::vector<int>{2, 3, 4}));
    EXPECT_TRUE(checkedRange(3, 3).empty());
}

TEST(CheckedDeathTest, AnInvertedRangeStops)
{
    EXPECT_DEATH(checkedRange(1, 0), "^Range requires lowerBound <= upperBound\n$");
}

TEST(CheckedDeathTest, AnIndexOutOfRangeStops)
{
    std::vector<int> values{7, 8};
    EXPECT_EQ(checkedAt(values, 1), 8);
    EXPECT_DEATH(checkedAt(values, 2), "^Index out of range\n$");
    EXPECT_DEATH(checkedAt(values, -1), "^Index out of range\n$");
}

TEST(CheckedDeathTest, AnAbsentValueStops)
{
    const std::optional<int> none;
    const std::shared_ptr<int> null;
    EXPECT_EQ(required(std::optional<int>(3)), 3);
    EXPECT_DEATH(required(none), "^Unexpectedly found nil while unwrapping an Optional value\n$");
    EXPECT_DEATH(required(null, implicitNilMessage),
                 "^Unexpectedly found nil while implicitly unwrapping an Optional value\n$");
}

struct Base {
    virtual ~Base() = default;
};

struct Derived : Base {
    int value = 4;
};

TEST(CheckedDeathTest, ACastToAnotherClassStops)
{
    Derived derived;
    Base base;
    EXPECT_EQ(checkedDowncast<Derived>(static_cast<Base&>(derived)).value, 4);
    EXPECT_DEATH(checkedDowncast<Derived>(base), "^Could not cast value\n$");
}

} // namespace
} // namespace volvelle
