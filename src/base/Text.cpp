#include "base/Text.h"

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

template <class T>
std::string floatText(T value)
{
    const T size = std::abs(value);
    const bool isDecimal =
        size == 0 || (size >= static_cast<T>(leastDecimal) && size < static_cast<T>(leastLargeScientific));
    const auto format = isDecimal ? std::chars_format::fixed : std::chars_format::scientific;
    std::array<char, 40> buffer{};
    const auto end = std::to_chars(buffer.data(), buffer.data() + buffer.size(), value, format).ptr;
    std::string result(buffer.data(), end);
    if (isDecimal && result.find('.') == std::string::npos) {
        result += ".0";
    }
    return result;
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
