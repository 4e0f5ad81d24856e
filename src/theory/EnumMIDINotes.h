#pragma once

#include <compare>
#include <functional>
#include <optional>
#include <string>
#include <string_view>

namespace volvelle {

// The twelve pitch classes. [any]
class EnumMIDINotes {
public:
    enum Case { C, C_, D, D_, E, F, F_, G, G_, A, A_, B };

    constexpr EnumMIDINotes(Case value) : value(value) {}

    Case value;

    constexpr int rawValue() const { return value; }

    // The pitch class of that number, if there is one.
    static std::optional<EnumMIDINotes> fromRawValue(int rawValue);

    // The name of a pitch class, "C" to "B"; empty for any other number, it does not reduce a note number.
    static std::string getName(int number);

    // True where the name holds "#".
    static bool isBlackKey(std::string_view name);

    friend constexpr auto operator<=>(EnumMIDINotes, EnumMIDINotes) = default;
};

} // namespace volvelle

template <>
struct std::hash<volvelle::EnumMIDINotes> {
    std::size_t operator()(volvelle::EnumMIDINotes value) const noexcept
    {
        return static_cast<std::size_t>(value.rawValue());
    }
};
