#pragma once

#include "services/audiograph/graph/AudioComponentRegistry.h"

#include <filesystem>
#include <optional>

namespace volvelle {

// Makes the synthesizer unit as music is played with it: so loud that a dense arrangement reaches the
// limiter. Its built-in sounds are those of `bank`, the best one installed without a value. One that rests
// takes no time where nothing sounds. [any]
AudioComponentFactory musicSynthesizer(const std::optional<std::filesystem::path>& bank, bool rests = false);

} // namespace volvelle
