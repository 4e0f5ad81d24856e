#pragma once

#include "base/Result.h"
#include "scores/Score.h"
#include "scores/ScoreBar.h"
#include "scores/ScoreLine.h"

#include <optional>
#include <string_view>
#include <vector>

namespace volvelle::scores {

// The readers of the three kinds of body. `body` holds the lines after the opening word. Each appends notes
// (and chords) to the score; on a fault it answers one plain line.
Result<> readNotes(const std::vector<ScoreLine>& body, Score& score);
Result<> readChords(const std::vector<ScoreLine>& body, Score& score);
Result<> readDrums(const std::vector<ScoreLine>& body, Score& score);

// Gives a score the notes of its chords as readChords() does, each chord up to the next one.
void layOutChords(Score& score);

// The four bars of a body of bar lines that the line `opened` opens.
Result<std::vector<ScoreBar>> fourBars(const std::vector<ScoreLine>& body, int opened);

// The velocity of a level word: pp 40, p 52, mp 64, mf 76, f 88, ff 100.
std::optional<int> dynamicsLevel(std::string_view word);

} // namespace volvelle::scores
