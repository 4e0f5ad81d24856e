#pragma once

#include "services/synthesizer/SynthesizerOptions.h"

#include <filesystem>
#include <optional>

namespace volvelle::test {

// Makes the synthesizer known to the whole process, so that an AVAudioUnitMIDIInstrument finds it.
void registerMIDISynth(const SynthesizerOptions& options = {},
                       const std::optional<std::filesystem::path>& builtIn = std::nullopt);

} // namespace volvelle::test
