#pragma once

#include "base/FatalStop.h"

#include <concepts>
#include <optional>
#include <string>
#include <type_traits>
#include <utility>

namespace volvelle {

// Why an operation failed, as one plain sentence.
struct Failure {
    std::string sentence;
};

inline Failure failure(std::string sentence)
{
    return {std::move(sentence)};
}

// What an operation answers that can fail and tells why: a value, or one plain sentence. Made of either, so
// that an operation ends with `return value;` or `return failure("It could not be done.");`. [any]
template <class T = void>
class [[nodiscard]] Result {
public:
    template <class U = T>
        requires(std::convertible_to<U, T> && !std::same_as<std::remove_cvref_t<U>, Result>)
    Result(U&& value) : held(std::forward<U>(value))
    {
    }

    Result(Failure failure) : sentence(std::move(failure.sentence)) {}

    // True where there is a value.
    explicit operator bool() const { return held.has_value(); }

    // The value; none is a fatal stop with the sentence.
    T& operator*() & { return valueOf(*this); }

    const T& operator*() const& { return valueOf(*this); }

    T&& operator*() && { return std::move(valueOf(*this)); }

    T* operator->() { return &valueOf(*this); }

    const T* operator->() const { return &valueOf(*this); }

    // The sentence; empty where there is a value.
    const std::string& error() const& { return sentence; }

    std::string error() && { return std::move(sentence); }

private:
    template <class Self>
    static auto& valueOf(Self& self)
    {
        if (!self.held) {
            fatalStop(self.sentence);
        }
        return *self.held;
    }

    std::optional<T> held;
    std::string sentence;
};

// Done, or one plain sentence. An operation that did its work ends with `return {};`.
template <>
class [[nodiscard]] Result<void> {
public:
    Result() = default;

    Result(Failure failure) : isDone(false), sentence(std::move(failure.sentence)) {}

    explicit operator bool() const { return isDone; }

    // The sentence; empty where all was done.
    const std::string& error() const& { return sentence; }

    std::string error() && { return std::move(sentence); }

private:
    bool isDone = true;
    std::string sentence;
};

} // namespace volvelle
