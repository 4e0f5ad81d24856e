#pragma once

#include "base/Result.h"
#include "scores/ScoreLine.h"

#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace volvelle::scores {

// The small text operations that the readers of scores share. All views point into the text handed in.

// The lines that say something: comments (";") and blank lines are left out, blanks at both ends cut.
std::vector<ScoreLine> scoreLines(std::string_view text);

// Fails with a line about the first byte that is not UTF-8.
Result<> checkBytes(std::string_view text);

// The number of lines, 1 at least.
int lineCount(std::string_view text);

// The text without blanks, tabs and carriage returns at both ends.
std::string_view trimmed(std::string_view text);

// The pieces between blanks; what stands between "[" and "]" stays one piece.
std::vector<std::string_view> scoreCells(std::string_view text);

// The bars of a line "| ... | ... |", or nothing if it does not begin and end with "|".
std::optional<std::vector<std::string_view>> scoreBars(std::string_view line);

// The characters of a text in UTF-8.
std::vector<std::string_view> characters(std::string_view text);

// A whole number in plain digits that lies within the closed range.
std::optional<int> wholeNumber(std::string_view text, int least, int most);

// "line 7: " and "line 7, bar 2: ", the heads of all error lines.
std::string atLine(int line);
std::string atBar(int line, int bar);

// The text between double quotes.
std::string quoted(std::string_view text);

} // namespace volvelle::scores
