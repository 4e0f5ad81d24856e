#pragma once

#include <concepts>
#include <cstdint>
#include <memory>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

// Values as text, as messages print them: integers plain, floating point in the shortest form that reads back
// the same, from 0.0001 to below 1e16 as a decimal with at least one digit after the point ("120.0",
// "0.25"), else scientific ("1e-05", "1e+16"), truth values "true" and "false", absent values "nil", arrays
// "[1, 2]". [any]
namespace volvelle {

std::string text(double value);
std::string text(float value);
std::string text(std::int64_t value);
std::string text(std::uint64_t value);

inline std::string text(std::same_as<bool> auto value)
{
    return value ? "true" : "false";
}

template <std::integral T>
    requires(!std::same_as<T, bool> && !std::same_as<T, std::int64_t> && !std::same_as<T, std::uint64_t>)
std::string text(T value)
{
    if constexpr (std::same_as<T, char>) {
        return std::string(1, value);
    } else if constexpr (std::is_signed_v<T>) {
        return text(static_cast<std::int64_t>(value));
    } else {
        return text(static_cast<std::uint64_t>(value));
    }
}

inline std::string text(std::string_view value)
{
    return std::string(value);
}

inline std::string text(const char* value)
{
    return value;
}

// A value for people, rounded to thousandths: "14.485".
std::string roundedText(double value);

template <class T>
std::string text(const std::optional<T>& value)
{
    return value ? text(*value) : "nil";
}

template <class T>
std::string text(const std::vector<T>& values)
{
    std::string result = "[";
    for (std::size_t i = 0; i < values.size(); ++i) {
        result += i == 0 ? "" : ", ";
        result += text(values[i]);
    }
    return result + "]";
}

// The texts of all arguments, joined.
template <class... Values>
std::string concat(const Values&... values)
{
    std::string result;
    const auto append = [&result](const auto& value) {
        if constexpr (std::convertible_to<decltype(value), std::string_view>) {
            result += std::string_view(value);
        } else {
            result += text(value);
        }
    };
    (append(values), ...);
    return result;
}

// How many there are of something: "1 note", "2 notes".
template <std::integral T>
std::string counted(T count, std::string_view one, std::string_view many)
{
    return concat(count, " ", count == 1 ? one : many);
}

// A byte as two upper-case hexadecimal digits, filled up with `fill` where it has but one.
std::string hexadecimal(std::uint8_t value, char fill = '0');

// Each byte as the character of that number, U+0000 to U+00FF, in UTF-8.
std::string latinText(const std::vector<std::uint8_t>& bytes);

} // namespace volvelle
