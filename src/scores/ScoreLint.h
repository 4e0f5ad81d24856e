#pragma once

#include "scores/Score.h"

#include <string>
#include <vector>

namespace volvelle {

// What is musically wrong with a score as far as rules can tell: one plain line for each fault, none for a
// good one, with the line and the bar where the score has a text. Held are, by kind: the range of keys, the
// number of notes (of chords in a chord pattern), notes that overlap or reach past the end, the velocities
// and how many of them differ, the voices at one position, chords in a row with one name, whether each chord
// ends before the next, breaths and the one highest point of a lead, small steps in leads and basses, and the
// turn of the drums in the fourth bar.
std::vector<std::string> lintScore(const Score& score);

} // namespace volvelle
