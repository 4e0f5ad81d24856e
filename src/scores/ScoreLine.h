#pragma once

#include <string_view>

namespace volvelle::scores {

// One line of a score's text.
struct ScoreLine {
    int number = 0; // counted from 1 over all lines of the file
    std::string_view text;
};

} // namespace volvelle::scores
