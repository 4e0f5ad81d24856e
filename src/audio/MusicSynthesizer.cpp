#include "audio/MusicSynthesizer.h"

#include "services/soundunits/MIDISynthUnit.h"

namespace volvelle {

AudioComponentFactory musicSynthesizer(const std::optional<std::filesystem::path>& bank, bool rests)
{
    SynthesizerOptions options;
    options.gain = 0.5; // the limiter holds what a dense arrangement brings above full scale
    options.rests = rests;
    return [options, bank](const AudioComponentDescription& description) {
        return std::make_shared<MIDISynthUnit>(description, options, bank);
    };
}

} // namespace volvelle
