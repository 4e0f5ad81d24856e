#pragma once

#include "base/FatalStop.h"

#include <cmath>
#include <concepts>
#include <cstddef>
#include <limits>
#include <memory>
#include <optional>
#include <ranges>
#include <type_traits>
#include <utility>

// Arithmetic, conversions, ranges, element accesses and casts that stop the program where the plain language
// would go on with a wrong value. All of them are free of side effects otherwise. [any]
namespace volvelle {

// a + b, a - b, a * b in their own type; a result that does not fit is a fatal stop.
template <std::integral T>
constexpr T checkedAdd(T a, std::type_identity_t<T> b)
{
    T result{};
    if (__builtin_add_overflow(a, b, &result)) {
        fatalStop(arithmeticMessage);
    }
    return result;
}

template <std::integral T>
constexpr T checkedSubtract(T a, std::type_identity_t<T> b)
{
    T result{};
    if (__builtin_sub_overflow(a, b, &result)) {
        fatalStop(arithmeticMessage);
    }
    return result;
}

template <std::integral T>
constexpr T checkedMultiply(T a, std::type_identity_t<T> b)
{
    T result{};
    if (__builtin_mul_overflow(a, b, &result)) {
        fatalStop(arithmeticMessage);
    }
    return result;
}

// `value` as a To. Integers must fit; a floating point value is truncated toward zero, must be finite, and
// the truncated value must fit. Anything else is a fatal stop.
template <std::integral To, std::integral From>
constexpr To checkedCast(From value)
{
    if (!std::in_range<To>(value)) {
        fatalStop(conversionMessage);
    }
    return static_cast<To>(value);
}

template <std::integral To, std::floating_point From>
To checkedCast(From value)
{
    const double whole = std::trunc(static_cast<double>(value));
    // 2^digits is exact in a double, the greatest value of a 64-bit type is not.
    const double above = std::ldexp(1.0, std::numeric_limits<To>::digits);
    const double below = std::is_signed_v<To> ? -above : 0.0;
    if (!(whole >= below && whole < above)) {
        fatalStop(conversionMessage);
    }
    return static_cast<To>(whole);
}

// The integers from `lower` up to, not including, `upper`; an inverted range is a fatal stop.
template <std::integral T>
auto checkedRange(T lower, std::type_identity_t<T> upper)
{
    if (upper < lower) {
        fatalStop(rangeMessage);
    }
    return std::ranges::iota_view<T, T>(lower, upper);
}

// The element at `index`; an index out of range is a fatal stop.
template <class Container, std::integral Index>
decltype(auto) checkedAt(Container& container, Index index)
{
    if (std::cmp_less(index, 0) || std::cmp_greater_equal(index, container.size())) {
        fatalStop(indexMessage);
    }
    return container[static_cast<std::size_t>(index)];
}

// The value behind a pointer or an optional; none is a fatal stop with `message`.
template <class T>
T& required(T* value, std::string_view message = nilMessage)
{
    if (value == nullptr) {
        fatalStop(message);
    }
    return *value;
}

template <class T>
T& required(const std::shared_ptr<T>& value, std::string_view message = nilMessage)
{
    return required(value.get(), message);
}

template <class T>
const T& required(const std::optional<T>& value, std::string_view message = nilMessage)
{
    if (!value) {
        fatalStop(message);
    }
    return *value;
}

// `value` as the derived class To; an object of another class is a fatal stop.
template <class To, class From>
To& checkedDowncast(From& value)
{
    auto* derived = dynamic_cast<To*>(&value);
    if (derived == nullptr) {
        fatalStop(castMessage);
    }
    return *derived;
}

} // namespace volvelle
