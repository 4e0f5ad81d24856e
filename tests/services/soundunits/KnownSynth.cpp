#include "tests/services/soundunits/KnownSynth.h"

#include "services/audiograph/graph/AudioComponentRegistry.h"
#include "services/soundunits/MIDISynthUnit.h"

#include <memory>

namespace volvelle::test {

void registerMIDISynth(const SynthesizerOptions& options, const std::optional<std::filesystem::path>& builtIn)
{
    registerAudioComponent(synthesizerComponent, [=](const AudioComponentDescription& description) {
        return std::make_shared<MIDISynthUnit>(description, options, builtIn);
    });
}

} // namespace volvelle::test
