#pragma once

#include "cli/CommandOutput.h"
#include "cli/FileDescription.h"

#include <filesystem>

namespace volvelle {

// Prints length, tempo, tracks, chords and warnings for a reader.
void printInspection(const std::filesystem::path& file, const FileDescription& description,
                     CommandOutput& output);

} // namespace volvelle
