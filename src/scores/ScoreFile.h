#pragma once

#include "base/Result.h"
#include "scores/Score.h"

#include <filesystem>
#include <optional>
#include <vector>

// The files of scores, as the compiler and the rules see them. [any]
namespace volvelle {

// The scores of a folder in the order of their numbers, those of one number and those without one by name.
// A name that begins with a dot is that of no score: an editor's, or the system's.
Result<std::vector<std::filesystem::path>> scoresIn(const std::filesystem::path& folder);

// The number of a score that is called NNN-some-name.score as it should be: three digits or, from 1000 on,
// more; else nothing.
std::optional<int> scoreNumber(const std::filesystem::path& file);

// What is said of a folder without any.
inline constexpr auto noScores = "there are no scores in the folder";

// Whether one of the five folders of scores lies in a folder.
bool holdsScoreFolders(const std::filesystem::path& library);

// Reads one score. Pipes and devices are not opened.
Result<Score> readScore(const std::filesystem::path& file, ScoreKind kind);

} // namespace volvelle
