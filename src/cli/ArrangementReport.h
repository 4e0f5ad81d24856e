#pragma once

#include "cli/CommandOutput.h"
#include "inspection/ArrangementSummary.h"

#include <string>
#include <vector>

namespace volvelle {

// Prints titles, chords and numbers of notes of arrangements that stand one after the other.
void printReport(CommandOutput& output, const std::vector<ArrangementSummary>& arrangements);

// The titles and the chords of one arrangement in one line.
std::string shortReport(const ArrangementSummary& arrangement);

} // namespace volvelle
