#pragma once

#include "base/Result.h"
#include "services/synthesizer/BankFile.h"
#include "services/synthesizer/DLSSoundFont.h"
#include "services/synthesizer/SynthesizerOptions.h"

#include <optional>

// Private to the library.
namespace volvelle {

// What must be known of a bank file before it is loaded. [main, worker]
struct SynthesizerBank {
    // Looks at the file, and reads it where it holds downloadable sounds. Fails where it is no bank.
    Result<> open(const BankFile& file);

    std::optional<DLSFile> sounds;
};

FluidPointer<fluid_settings_t> makeSettings(const SynthesizerOptions& options, bool isLarge);

} // namespace volvelle
