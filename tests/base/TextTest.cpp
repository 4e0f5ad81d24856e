#include "base/Text.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <array>
#include <charconv>
#include <cmath>
#include <limits>
#include <random>

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

TEST(Text, FloatsAreDecimalFromATenThousandthToBelowTenToTheSixteenth)
{
    EXPECT_EQ(text(0.0), "0.0");
    EXPECT_EQ(text(0.0001), "0.0001");
    EXPECT_EQ(text(-0.0001), "-0.0001");
    EXPECT_EQ(text(std::nextafter(0.0001, 0.0)), "9.999999999999999e-05");
    EXPECT_EQ(text(0.00001), "1e-05");
    EXPECT_EQ(text(100000.0), "100000.0");
    EXPECT_EQ(text(100000.5), "100000.5");
    EXPECT_EQ(text(12345678.0), "12345678.0");
    EXPECT_EQ(text(1e15), "1000000000000000.0");
    EXPECT_EQ(text(9999999999999998.0), "9999999999999998.0");
    EXPECT_EQ(text(1e16), "1e+16");
    EXPECT_EQ(text(-1e16), "-1e+16");
    EXPECT_EQ(text(1.5e20), "1.5e+20");
    EXPECT_EQ(text(100000.0F), "100000.0");
    EXPECT_EQ(text(0.0001F), "0.0001");
    EXPECT_EQ(text(0.001F), "0.001");
    EXPECT_EQ(text(1e17F), "1e+17");
    EXPECT_EQ(text(-std::numeric_limits<double>::infinity()), "-inf");
    EXPECT_EQ(text(std::numeric_limits<double>::denorm_min()), "5e-324");
}

TEST(Text, LargeFloatsOfSinglePrecisionHaveTheirShortestDigitsFilledUpWithZeros)
{
    EXPECT_EQ(text(1e15F), "1000000000000000.0");
    EXPECT_EQ(text(-1e15F), "-1000000000000000.0");
    EXPECT_EQ(text(1e11F), "100000000000.0");
    EXPECT_EQ(text(123456789.0F), "123456790.0");
    EXPECT_EQ(text(16777216.0F), "16777216.0");
    EXPECT_EQ(text(8388607.5F), "8388607.5");
    EXPECT_EQ(text(16777218.0F), "16777218.0");
    EXPECT_EQ(text(33554436.0F), "33554436.0");
    EXPECT_EQ(text(1e16F), "1e+16");
    EXPECT_EQ(text(std::nextafter(1e16F, 0.0F)), "9999999000000000.0");
    EXPECT_EQ(text(std::nextafter(0.0001F, 0.0F)), "9.999999e-05");
    EXPECT_EQ(text(std::numeric_limits<float>::max()), "3.4028235e+38");
    EXPECT_EQ(text(-std::numeric_limits<float>::infinity()), "-inf");
    EXPECT_EQ(text(std::numeric_limits<float>::quiet_NaN()), "nan");
}

// The digits of a text without sign, point, exponent and the zeros around them.
std::string digitsOf(std::string line)
{
    line.resize(std::min(line.size(), line.find('e')));
    std::erase_if(line, [](char character) { return character == '.' || character == '-'; });
    line.erase(0, line.find_first_not_of('0'));
    line.resize(line.find_last_not_of('0') + 1);
    return line;
}

template <class T>
void expectShortest(T value)
{
    const std::string line = text(value);
    T again = 0;
    const auto read = std::from_chars(line.data(), line.data() + line.size(), again);
    EXPECT_EQ(read.ptr, line.data() + line.size()) << line;
    EXPECT_EQ(again, value) << line;
    std::array<char, 40> shortest{};
    const auto end = std::to_chars(shortest.begin(), shortest.end(), value, std::chars_format::scientific);
    EXPECT_EQ(digitsOf(line).size(), digitsOf({shortest.data(), end.ptr}).size()) << line;
    const T size = std::abs(value);
    const bool isDecimal = size >= T(1e-4) && size < T(1e16);
    EXPECT_EQ(line.find('e') == std::string::npos, isDecimal) << line;
    EXPECT_EQ(line.find('.') != std::string::npos, isDecimal || line.find('.') < line.find('e')) << line;
}

TEST(Text, AnyFloatReadsBackFromNoMoreDigitsThanItNeeds)
{
    std::mt19937 random(7);
    std::uniform_real_distribution<double> exponent(-8.0, 20.0);
    for (int i = 0; i < 20'000; ++i) {
        const double value = std::pow(10.0, exponent(random)) * (i % 2 == 0 ? 1.0 : -1.0);
        expectShortest(value);
        expectShortest(static_cast<float>(value));
    }
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
    const std::string digits = "0123456789ABCDEF";
    for (unsigned byte = 0; byte < 256; ++byte) {
        const char high = digits[byte / 16];
        const std::string low(1, digits[byte % 16]);
        EXPECT_EQ(hexadecimal(static_cast<std::uint8_t>(byte)), high + low);
        EXPECT_EQ(hexadecimal(static_cast<std::uint8_t>(byte), ' '), (byte < 16 ? ' ' : high) + low);
    }
}

TEST(Text, EveryByteIsOneCharacter)
{
    EXPECT_EQ(latinText({0x41, 0xC4, 0xFF}), "A\xC3\x84\xC3\xBF");
    EXPECT_EQ(latinText({}), "");
    EXPECT_EQ(latinText({0x7F, 0x80, 0xBF, 0xC0}), "\x7F\u0080\u00BF\u00C0");
    for (unsigned byte = 0; byte < 256; ++byte) {
        const auto character = static_cast<char>(byte < 0x80 ? byte : byte % 0x40 + 0x80);
        const std::string lead = byte < 0x80 ? "" : byte < 0xC0 ? "\xC2" : "\xC3";
        EXPECT_EQ(latinText({static_cast<std::uint8_t>(byte)}), lead + character) << byte;
    }
}

TEST(Text, OneIsCountedAsOne)
{
    EXPECT_EQ(counted(0, "note", "notes"), "0 notes");
    EXPECT_EQ(counted(1, "note", "notes"), "1 note");
    EXPECT_EQ(counted(std::size_t{2}, "note", "notes"), "2 notes");
}

} // namespace
} // namespace volvelle
