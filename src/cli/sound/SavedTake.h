#pragma once

#include "cli/IdeaFile.h"

#include <cstdint>
#include <filesystem>
#include <span>
#include <string>
#include <vector>

namespace volvelle {

// Where the bytes of a recording went.
struct SavedTake {
    std::string file;  // empty where they could be written nowhere
    std::string fault; // why not to where they were to go; empty where they did
};

// Writes to `wanted`, else to the next free name like that of `out` in the first of the folders that takes
// it; one that is not there is made. "Recording.mid" where `out` has no name of a file. `wanted` is waited
// for until `end` says so. [main]
SavedTake saveTake(IdeaFile& wanted, const std::filesystem::path& out, std::span<const std::uint8_t> bytes,
                   std::span<const std::filesystem::path> spareFolders, const EndOfPatience& end = {});

// The documents folder and that of temporary files, as far as there are.
std::vector<std::filesystem::path> spareFolders();

} // namespace volvelle
