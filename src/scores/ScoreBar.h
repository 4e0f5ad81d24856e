#pragma once

#include <string_view>

namespace volvelle::scores {

// One bar of a score's body.
struct ScoreBar {
    int line = 0;   // counted from 1 over the file
    int number = 0; // 1 to 4
    std::string_view text;
};

} // namespace volvelle::scores
