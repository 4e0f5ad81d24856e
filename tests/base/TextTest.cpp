#include "base/Text.h"

#include <gtest/gtest.h>

#include <limits>

namespace volvelle {
namespace {

TEST(Text, FloatsAreShortestAndKeepADigitBehindThePoint)
{
    EXPECT_EQ(text(120.0), "120.0");
    EXPECT_EQ(text(0.25), "0.25");
    EXPECT_EQ(text(-0.0), "-0.0");
    EXPECT_EQ(text(0.1 + 0.2), "0.30000000000000004");
    EXPECT_EQ(text(0.1F), "0.1");
    EXPECT_EQ(text(1e300), "1e+300");
    EXPECT_EQ(text(std::numeric_limits<double>::infinity()), "inf");
    EXPECT_EQ(text(std::numeric_limits<double>::quiet_NaN()), "nan");
}

TEST(Text, IntegersOfAnyWidthArePlainNumbers)
{
    EXPECT_EQ(text(std::uint8_t{65}), "65");
    EXPECT_EQ(text(std::int8_t{-7}), "-7");
    EXPECT_EQ(text(std::numeric_limits<std::int64_t>::min()), "-9223372036854775808");
    EXPECT_EQ(text(std::numeric_limits<std::uint64_t>::max()), "18446744073709551615");
}

TEST(Text, TruthValuesAbsentValuesAndArraysHaveTheirForms)
{
    EXPECT_EQ(text(true), "true");
    EXPECT_EQ(text(false), "false");
    EXPECT_EQ(text(std::optional<int>()), "nil");
    EXPECT_EQ(text(std::optional<int>(3)), "3");
    EXPECT_EQ(text(std::vector<std::uint8_t>{1, 2}), "[1, 2]");
    EXPECT_EQ(text(std::vector<int>{}), "[]");
}

TEST(Text, ConcatJoinsTextsAndValues)
{
    EXPECT_EQ(concat("Fehler: ", -10859, ". ", std::string("x"), ' ', 2.0), "Fehler: -10859. x 2.0");
}

TEST(Text, AByteIsTwoHexadecimalDigitsWithTheWantedFill)
{
    EXPECT_EQ(hexadecimal(0x9F), "9F");
    EXPECT_EQ(hexadecimal(5), "05");
    EXPECT_EQ(hexadecimal(5, ' '), " 5");
}

TEST(Text, EveryByteIsOneCharacter)
{
    EXPECT_EQ(latinText({0x41, 0xC4, 0xFF}), "A\xC3\x84\xC3\xBF");
}

} // namespace
} // namespace volvelle
