#include "audio/SoundGraph.h"

#include "base/Text.h"
#include "services/audiodevice/MIDIPorts.h"
#include "services/audiograph/graph/AVAudioMixerNode.h"
#include "services/soundunits/MIDIPortUnit.h"
#include "services/synthesizer/SoundBanks.h"

#include <utility>

namespace volvelle {

SoundGraph::SoundGraph(bool limited) : engine(std::make_shared<AVAudioEngine>()), isLimited(limited) {}

SoundGraph::~SoundGraph()
{
    engine->stop();
}

bool SoundGraph::connectSynthesizer(const std::optional<std::filesystem::path>& bank, std::string& error)
{
    SynthesizerOptions options;
    options.gain = 0.5; // the limiter holds what a dense arrangement brings above full scale
    synthesizer =
        AudioUnitMIDISynth::make(engine, findSoundBank, [&](const AudioComponentDescription& description) {
            return synthUnit = std::make_shared<MIDISynthUnit>(description, options, bank);
        });
    synthesizer->create("Internal MIDI Synth (MT)");
    if (!synthesizer->midiSynth) {
        error = "The synthesizer could not be made.";
        return false;
    }
    if (synthUnit->soundBank().empty()) {
        error = bank ? concat("The sound bank '", bank->string(), "' could not be loaded.")
                     : "There is no sound bank on this machine: install a SoundFont.";
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
    const auto unit = std::make_shared<MIDIPortUnit>(midiPortComponent, std::move(port));
    return connect(AVAudioUnitMIDIInstrument::of(unit), error);
}

bool SoundGraph::connect(const std::shared_ptr<AVAudioUnitMIDIInstrument>& unit, std::string& error)
{
    instrument = unit;
    std::shared_ptr<AVAudioNode> last = unit;
    bool isDone = instrument && engine->attachNode(instrument) == noErr;
    if (isDone && isLimited) {
        limiter = AVAudioUnitEffect::make(limiterComponent);
        isDone = limiter && engine->attachNode(limiter) == noErr &&
                 engine->connect(instrument, limiter, 0, 0) == noErr;
        last = limiter;
    }
    isDone = isDone && engine->connect(last, engine->mainMixerNode(), 0, 0) == noErr;
    if (!isDone) {
        error = "The audio engine could not be built.";
    }
    return isDone;
}

} // namespace volvelle
