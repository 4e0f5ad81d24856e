#include "cli/sound/SoundGraph.h"

#include "base/Text.h"
#include "services/audiodevice/MIDIPorts.h"
#include "services/audiograph/AVAudioMixerNode.h"
#include "services/audiograph/AudioComponentRegistry.h"
#include "services/soundunits/MIDIPortUnit.h"
#include "services/soundunits/MIDISynthUnit.h"
#include "services/synthesizer/SoundBanks.h"

#include <utility>

namespace volvelle {

SoundGraph::SoundGraph(int cores) : engine(std::make_shared<AVAudioEngine>())
{
    SynthesizerOptions options;
    options.cores = cores;
    options.gain = 0.5; // the limiter holds what a dense arrangement brings above full scale
    registerMIDISynth(options);
}

SoundGraph::~SoundGraph()
{
    engine->stop();
}

bool SoundGraph::connectSynthesizer(const std::optional<std::filesystem::path>& bank, std::string& error)
{
    synthesizer = AudioUnitMIDISynth::make(engine, findSoundBank);
    synthesizer->create("Internal MIDI Synth (MT)");
    if (!synthesizer->midiSynth) {
        error = "The synthesizer could not be made.";
        return false;
    }
    if (bank && !synthesizer->loadSoundFont(*bank)) {
        error = concat("The sound bank '", bank->string(), "' could not be loaded.");
        return false;
    }
    const auto unit = std::dynamic_pointer_cast<MIDISynthUnit>(synthesizer->midiSynth->auAudioUnit());
    if (unit && unit->soundBank().empty()) {
        error = "There is no sound bank on this machine: install a SoundFont.";
        return false;
    }
    return connect(synthesizer->midiSynth, error);
}

bool SoundGraph::connectPort(const std::string& name, std::string& error)
{
    auto port = makeMIDIPorts()->openOutput(name, error);
    if (!port) {
        return false;
    }
    const auto held = std::make_shared<std::unique_ptr<MIDIOutput>>(std::move(port));
    registerAudioComponent(midiPortComponent, [held](const AudioComponentDescription& description) {
        return *held ? std::make_shared<MIDIPortUnit>(description, std::move(*held)) : nullptr;
    });
    return connect(AVAudioUnitMIDIInstrument::make(midiPortComponent), error);
}

bool SoundGraph::connect(const std::shared_ptr<AVAudioUnitMIDIInstrument>& unit, std::string& error)
{
    instrument = unit;
    limiter = AVAudioUnitEffect::make(limiterComponent);
    const bool isDone = instrument && limiter && engine->attachNode(instrument) == noErr &&
                        engine->attachNode(limiter) == noErr &&
                        engine->connect(instrument, limiter, 0, 0) == noErr &&
                        engine->connect(limiter, engine->mainMixerNode(), 0, 0) == noErr;
    if (!isDone) {
        error = "The audio engine could not be built.";
    }
    return isDone;
}

} // namespace volvelle
