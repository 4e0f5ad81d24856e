#pragma once

#include "scores/Score.h"
#include "scores/ScoreBar.h"
#include "scores/ScoreLine.h"

#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace volvelle::scores {

// The header lines of a score that its body needs.
struct ScoreSettings {
    int lowest = 48;                  // "from": the lowest key that a chord may use
    std::vector<int> dynamics = {76}; // "dynamics": a velocity for each bar, the last one going on
};

// The readers of the three kinds of body. `body` holds the lines after the opening word. Each appends notes
// (and chords) to the score; on a fault it answers false and leaves one plain line in `error`.
bool readNotes(const std::vector<ScoreLine>& body, Score& score, std::string& error);
bool readChords(const std::vector<ScoreLine>& body, const ScoreSettings& settings, Score& score,
                std::string& error);
bool readDrums(const std::vector<ScoreLine>& body, Score& score, std::string& error);

// The four bars of a body of bar lines that the line `opened` opens, or nothing and a line in `error`.
std::optional<std::vector<ScoreBar>> fourBars(const std::vector<ScoreLine>& body, int opened,
                                              std::string& error);

// The velocity of a level word: pp 40, p 52, mp 64, mf 76, f 88, ff 100.
std::optional<int> dynamicsLevel(std::string_view word);

} // namespace volvelle::scores
