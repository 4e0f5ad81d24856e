#pragma once

#include <string>
#include <vector>

namespace volvelle {

// The name that begins with `word`, else the one that is the fewest letters away from it: at most two, and
// less than half of the word. Empty where there is none. The first of several.
std::string nearestName(const std::string& word, const std::vector<std::string>& names);

} // namespace volvelle
