#pragma once

#include <array>
#include <string_view>

namespace volvelle {

// A chord type.
struct ChordTableRow {
    std::string_view shortName;
    std::string_view longName;
    int count; // of intervals
    std::array<int, 7> intervals;
};

// The row of that number, 0 to 102, else null. [any]
const ChordTableRow* chordTableRow(int row);

} // namespace volvelle
