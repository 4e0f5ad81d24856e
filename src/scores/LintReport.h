#pragma once

#include <string>
#include <vector>

namespace volvelle {

// What the rules say about scores.
struct LintReport {
    int scores = 0;                  // files that were looked at
    std::vector<std::string> faults; // plain lines, as "library/leads/004-kite.score: line 7, bar 2: ..."
};

} // namespace volvelle
