#include "base/Text.h"

#include <algorithm>
#include <array>
#include <charconv>
#include <cmath>

namespace volvelle {

namespace {

constexpr double leastDecimal = 1e-4;
constexpr double leastLargeScientific = 1e16;

template <class T>
std::string integerText(T value)
{
    std::array<char, 24> buffer{};
    const auto end = std::to_chars(buffer.data(), buffer.data() + buffer.size(), value).ptr;
    return {buffer.data(), end};
}

// "-1.25e+03" as "-1250.0".
std::string decimal(std::string_view scientific)
{
    const std::size_t mark = scientific.find('e');
    const bool isSmall = scientific[mark + 1] == '-';
    std::size_t exponent = 0;
    std::from_chars(scientific.data() + mark + 2, scientific.data() + scientific.size(), exponent);
    std::string digits(isSmall ? exponent : 0, '0');
    digits += scientific.substr(0, mark);
    std::erase_if(digits, [](char character) { return character == '.' || character == '-'; });
    const std::size_t point = isSmall ? 1 : exponent + 1;
    digits.resize(std::max(digits.size(), point + 1), '0');
    digits.insert(point, 1, '.');
    return (scientific.front() == '-' ? "-" : "") + digits;
}

template <class T>
std::string floatText(T value)
{
    const T size = std::abs(value);
    const bool isDecimal =
        size == 0 || (size >= static_cast<T>(leastDecimal) && size < static_cast<T>(leastLargeScientific));
    std::array<char, 40> buffer{};
    char* const begin = buffer.data();
    const auto end = std::to_chars(begin, begin + buffer.size(), value, std::chars_format::scientific).ptr;
    return isDecimal ? decimal({begin, end}) : std::string(begin, end);
}

} // namespace

std::string text(double value)
{
    return floatText(value);
}

std::string roundedText(double value)
{
    return text(std::round(value * 1000.0) / 1000.0);
}

std::string text(float value)
{
    return floatText(value);
}

std::string text(std::int64_t value)
{
    return integerText(value);
}

std::string text(std::uint64_t value)
{
    return integerText(value);
}

std::string hexadecimal(std::uint8_t value, char fill)
{
    static constexpr std::string_view digits = "0123456789ABCDEF";
    const char high = value < 16 ? fill : digits[value / 16U];
    return {high, digits[value % 16U]};
}

std::string latinText(const std::vector<std::uint8_t>& bytes)
{
    std::string result;
    result.reserve(bytes.size());
    for (const std::uint8_t byte : bytes) {
        if (byte < 0x80) {
            result += static_cast<char>(byte);
        } else {
            result += static_cast<char>(0xC0U | (byte >> 6U));
            result += static_cast<char>(0x80U | (byte & 0x3FU));
        }
    }
    return result;
}

} // namespace volvelle
