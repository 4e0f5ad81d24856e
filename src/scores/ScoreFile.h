#pragma once

#include "base/Result.h"
#include "scores/Score.h"

#include <filesystem>
#include <optional>
#include <vector>

// The files of scores, as the compiler and the rules see them. [any]
namespace volvelle {

// Whether a file is called as a MIDI file, which may stand in the place of a score: .mid or .midi, in letters
// of any case.
bool isMIDIFile(const std::filesystem::path& file);

// Whether a file is called as a score or as what stands in its place.
bool isScoreFile(const std::filesystem::path& file);

// The scores of a folder in the order of their numbers, those of one number and those without one by name.
// A name that begins with a dot is that of no score: an editor's, or the system's.
Result<std::vector<std::filesystem::path>> scoresIn(const std::filesystem::path& folder);

// The number of a score that is called NNN-some-name.score as it should be, or .mid: three digits or, from
// 1000 on, more; else nothing.
std::optional<int> scoreNumber(const std::filesystem::path& file);

// What is said of a folder without any.
inline constexpr auto noScores = "there are no scores in the folder";

// Whether one of the five folders of scores lies in a folder.
bool holdsScoreFolders(const std::filesystem::path& library);

// Reads one score, a MIDI file as readMIDIPhrase() does. Pipes and devices are not opened.
Result<Score> readScore(const std::filesystem::path& file, ScoreKind kind);

} // namespace volvelle
