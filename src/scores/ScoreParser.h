#pragma once

#include "base/Result.h"
#include "scores/Score.h"

#include <string_view>

namespace volvelle {

// Reads the text of one score, as library/README.md tells it.
// A fault is told in one plain line that names the place, as
// "line 7, bar 2: the cells add up to 15 sixteenths, not 16". [any] Nothing is thrown.
Result<Score> parseScore(std::string_view text, ScoreKind kind);

} // namespace volvelle
