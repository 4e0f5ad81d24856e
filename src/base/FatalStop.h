#pragma once

#include <string_view>

// The end of a program that found a defect: an absent value, an index out of range, arithmetic that does not
// fit, a broken phrase library.
namespace volvelle {

// Writes `message` and a line end to standard error, writes the log lines that wait, and takes the final
// step. Never returns, whatever the final step does. [any]
[[noreturn]] void fatalStop(std::string_view message);

// The last thing that a fatal stop does. The default aborts; a command removes its temporary file and exits.
using FinalStep = void (*)();

// Replaces the final step, null for the default, and returns the one before. [main] At start.
FinalStep setFinalStep(FinalStep step);

inline constexpr std::string_view nilMessage = "Unexpectedly found nil while unwrapping an Optional value";
inline constexpr std::string_view implicitNilMessage =
    "Unexpectedly found nil while implicitly unwrapping an Optional value";
inline constexpr std::string_view indexMessage = "Index out of range";
inline constexpr std::string_view rangeMessage = "Range requires lowerBound <= upperBound";
inline constexpr std::string_view arithmeticMessage = "Arithmetic overflow";
inline constexpr std::string_view conversionMessage = "Not enough bits to represent the passed value";
inline constexpr std::string_view castMessage = "Could not cast value";
inline constexpr std::string_view endlessMessage = "A search that can never end was stopped";

} // namespace volvelle
