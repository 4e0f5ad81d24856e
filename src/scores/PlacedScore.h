#pragma once

#include "scores/Score.h"

#include <filesystem>
#include <vector>

namespace volvelle {

// A score, and the file that it was read from.
struct PlacedScore {
    std::filesystem::path file;
    Score score;
};

// Of one folder, in the order of their numbers.
using PlacedScores = std::vector<PlacedScore>;

} // namespace volvelle
