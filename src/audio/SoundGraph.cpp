#include "audio/SoundGraph.h"

#include "audio/MusicSynthesizer.h"
#include "base/Checked.h"
#include "base/Text.h"
#include "services/audiodevice/MIDIPorts.h"
#include "services/audiograph/graph/AVAudioMixerNode.h"
#include "services/soundunits/MIDIPortUnit.h"
#include "services/synthesizer/SoundBanks.h"

#include <utility>

namespace volvelle {

SoundGraph::SoundGraph(bool limited, bool isSequenced)
    : engine(std::make_shared<AVAudioEngine>()), isLimited(limited), isSequenced(isSequenced)
{
}

SoundGraph::~SoundGraph()
{
    engine->stop();
}

Result<> SoundGraph::connectSynthesizer(const std::optional<std::filesystem::path>& bank)
{
    const auto makeUnit = [this, make = musicSynthesizer(bank)](const AudioComponentDescription& asked) {
        auto unit = make(asked);
        synthUnit = std::dynamic_pointer_cast<MIDISynthUnit>(unit);
        return sequenced(std::move(unit));
    };
    synthesizer = AudioUnitMIDISynth::make(engine, findSoundBank, makeUnit);
    synthesizer->create("Internal MIDI Synth (MT)");
    if (!synthesizer->midiSynth) {
        return failure("The synthesizer could not be made.");
    }
    if (required(synthUnit).soundBank().empty()) {
        return failure(bank ? concat("The sound bank '", bank->string(), "' could not be loaded.")
                            : "There is no sound bank on this machine: install a SoundFont.");
    }
    return connect(synthesizer->midiSynth);
}

Result<> SoundGraph::connectPort(const std::string& name)
{
    auto port = makeMIDIPorts()->openOutput(name);
    if (!port) {
        return failure(port.error());
    }
    const auto unit = std::make_shared<MIDIPortUnit>(midiPortComponent, *std::move(port));
    return connect(AVAudioUnitMIDIInstrument::of(sequenced(unit)));
}

std::shared_ptr<AUAudioUnit> SoundGraph::sequenced(std::shared_ptr<AUAudioUnit> unit)
{
    if (!isSequenced) {
        return unit;
    }
    sequencedUnit = std::make_shared<SequencedUnit>(std::move(unit));
    return sequencedUnit;
}

Result<> SoundGraph::connect(const std::shared_ptr<AVAudioUnitMIDIInstrument>& unit)
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
    return isDone ? Result<>() : failure("The audio engine could not be built.");
}

} // namespace volvelle
