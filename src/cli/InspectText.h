#pragma once

#include "cli/CommandOutput.h"
#include "inspection/FileDescription.h"

#include <filesystem>

namespace volvelle {

// Prints length, tempo, tracks, chords and one line of warning for a reader, positions to thousandths of a
// beat.
void printInspection(const std::filesystem::path& file, const FileDescription& description,
                     CommandOutput& output);

} // namespace volvelle
