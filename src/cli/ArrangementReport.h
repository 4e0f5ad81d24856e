#pragma once

#include "cli/CommandOutput.h"
#include "inspection/ArrangementSummary.h"

#include <filesystem>
#include <set>
#include <string>
#include <vector>

namespace volvelle {

// Prints titles, chords and numbers of notes of arrangements that stand one after the other.
void printReport(CommandOutput& output, const std::vector<ArrangementSummary>& arrangements);

// The titles and the chords of one arrangement in one line.
std::string shortReport(const ArrangementSummary& arrangement);

// A line on standard error for each phrase that could not be read and is not among `told` yet.
void tellUnread(const ArrangementSummary& arrangement, std::set<std::filesystem::path>& told,
                CommandOutput& output);

} // namespace volvelle
