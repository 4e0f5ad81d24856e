#pragma once

#include "scores/Score.h"

#include <string>
#include <vector>

namespace volvelle {

// What is missing of what is wanted of a phrase of its folder: one plain line for each fault. Held are, by
// kind: of chord patterns the distinct chords and the longest one; of leads the mean velocity; of basses the
// notes on beats 1 and 3 and the fourth or fifth (a third will do) in each bar; of drums the kicks; of all
// but chord patterns that the four bars are not alike. A colour is not held to those of basses and drums.
// [any]
std::vector<std::string> lintPhrase(const Score& score);

} // namespace volvelle
