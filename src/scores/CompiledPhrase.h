#pragma once

#include <cstdint>
#include <filesystem>
#include <vector>

namespace volvelle {

// One phrase as it is to stand on disk.
struct CompiledPhrase {
    std::filesystem::path place;     // below the folder of the library, as "Phrases2/02 leads/001.mid"
    std::vector<std::uint8_t> bytes; // of the Standard MIDI File
};

} // namespace volvelle
