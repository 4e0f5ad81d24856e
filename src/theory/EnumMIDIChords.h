#pragma once

#include <compare>
#include <functional>
#include <optional>
#include <string>
#include <vector>

namespace volvelle {

// The chord types, and the table of their names and intervals. The table is addressed by plain row numbers,
// which the case names do not follow; only NUMBEROFCHORDSINKEY is used, as the number of chord types of a
// key. [any]
class EnumMIDIChords {
public:
    enum Case { C8, C5, CM, Cm, Cd, Ca, C7, CM7, Cm7, CSus2, CSus4, C_5, C6, Cm6, NUMBEROFCHORDSINKEY };

    constexpr EnumMIDIChords(Case value) : value(value) {}

    Case value;

    constexpr int rawValue() const { return value; }

    // The case of that number, if there is one.
    static std::optional<EnumMIDIChords> fromRawValue(int rawValue);

    // Of row 0 to 102: the symbol that follows the key name, the spoken name, and the intervals in semitones
    // above the root, root first. Empty for any other row.
    static std::string getShortName(int row);
    static std::string getLongName(int row);
    static std::vector<int> getRule(int row);

    // Takes one octave off each element above 11. Negative elements are left out and put the later ones out
    // of step, which ends in a fatal stop.
    static std::vector<int> limitToOctave(const std::vector<int>& array);

    friend constexpr auto operator<=>(EnumMIDIChords, EnumMIDIChords) = default;
};

} // namespace volvelle

template <>
struct std::hash<volvelle::EnumMIDIChords> {
    std::size_t operator()(volvelle::EnumMIDIChords value) const noexcept
    {
        return static_cast<std::size_t>(value.rawValue());
    }
};
