#pragma once

#include "scores/Score.h"

#include <string>
#include <vector>

namespace volvelle {

// What is missing of what a folder wants of its phrases together: one plain line for each fault. All are of
// one kind. [any]
std::vector<std::string> lintFolder(const std::vector<Score>& phrases, ScoreKind kind);

} // namespace volvelle
