#include "theory/EnumMIDIChords.h"

#include "base/Checked.h"
#include "theory/ChordTable.h"

namespace volvelle {

std::optional<EnumMIDIChords> EnumMIDIChords::fromRawValue(int rawValue)
{
    if (rawValue < C8 || rawValue > NUMBEROFCHORDSINKEY) {
        return std::nullopt;
    }
    return static_cast<Case>(rawValue);
}

std::string EnumMIDIChords::getShortName(int row)
{
    const ChordTableRow* found = chordTableRow(row);
    return found == nullptr ? std::string() : std::string(found->shortName);
}

std::string EnumMIDIChords::getLongName(int row)
{
    const ChordTableRow* found = chordTableRow(row);
    return found == nullptr ? std::string() : std::string(found->longName);
}

std::vector<int> EnumMIDIChords::getRule(int row)
{
    const ChordTableRow* found = chordTableRow(row);
    if (found == nullptr) {
        return {};
    }
    return {found->intervals.begin(), found->intervals.begin() + found->count};
}

std::vector<int> EnumMIDIChords::limitToOctave(const std::vector<int>& array)
{
    std::vector<int> result;
    for (std::size_t i = 0; i < array.size(); ++i) {
        if (array[i] < 0) {
            continue;
        }
        result.push_back(array[i]);
        int& element = checkedAt(result, i);
        if (element > 11) {
            element -= 12;
        }
    }
    return result;
}

} // namespace volvelle
