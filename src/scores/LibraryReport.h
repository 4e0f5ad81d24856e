#pragma once

#include <string>
#include <vector>

namespace volvelle {

// What compiling the whole library did.
struct LibraryReport {
    int compiled = 0; // scores that stand as phrases now
    int changed = 0;  // phrases among them whose bytes were written
    int removed = 0;  // compiled phrases beyond the last score
    std::vector<std::string>
        errors; // plain lines, each beginning with the place, as "leads/004-kite.score: ..."
};

} // namespace volvelle
