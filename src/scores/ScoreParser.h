#pragma once

#include "scores/Score.h"

#include <optional>
#include <string>
#include <string_view>

namespace volvelle {

// Reads the text of one score, as library/README.md tells it.
// Any thread; nothing is thrown. Without a result `error` holds one plain line that names the place,
// as "line 7, bar 2: the cells add up to 15 sixteenths, not 16"; with a result it is left alone.
std::optional<Score> parseScore(std::string_view text, ScoreKind kind, std::string& error);

} // namespace volvelle
