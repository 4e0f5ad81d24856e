#pragma once

#include "services/synthesizer/DLSSoundFont.h"
#include "services/synthesizer/SynthesizerOptions.h"

#include <cstdint>
#include <filesystem>
#include <optional>
#include <string>

// Private to the library.
namespace volvelle {

// What must be known of a bank file before it is loaded. [any thread but the render thread]
struct SynthesizerBank {
    static constexpr std::uintmax_t largeSize = 32U << 20U; // bytes

    // Looks at the file, and reads it where it holds downloadable sounds. False with one plain sentence where
    // it is no bank.
    bool open(const std::filesystem::path& path, std::string& error);

    bool isLarge = false; // its samples are read when they are needed
    std::optional<DLSFile> sounds;
};

FluidPointer<fluid_settings_t> makeSettings(const SynthesizerOptions& options, bool isLarge);

} // namespace volvelle
