#pragma once

#include "scores/Score.h"

#include <map>
#include <set>

namespace volvelle::scores {

// Where something is struck in a bar (1 to 4), in beats from the start of the bar, and the keys struck there.
std::map<double, std::set<int>> onsets(const Score& score, int bar);

} // namespace volvelle::scores
