#pragma once

#include "audio/AudioUnitMIDISynth.h"
#include "audio/SequencedUnit.h"
#include "base/Result.h"
#include "services/audiograph/graph/AVAudioEngine.h"
#include "services/audiograph/graph/AVAudioUnitEffect.h"
#include "services/audiograph/graph/AVAudioUnitMIDIInstrument.h"
#include "services/soundunits/MIDISynthUnit.h"

#include <filesystem>
#include <memory>
#include <optional>
#include <string>

namespace volvelle {

// The engine of a command: instrument, limiter, main mixer, output. The instrument is the internal
// synthesizer, or a MIDI port that stands in its place; it may have a sequencer of its own. [main]
class SoundGraph {
public:
    // Without the limiter for a part of a mix that is limited as a whole.
    explicit SoundGraph(bool isLimited = true, bool isSequenced = false);
    ~SoundGraph();
    SoundGraph(const SoundGraph&) = delete;
    SoundGraph& operator=(const SoundGraph&) = delete;

    // Makes the synthesizer with its built-in sounds or those of `bank`.
    Result<> connectSynthesizer(const std::optional<std::filesystem::path>& bank);

    // Makes the instrument that sends to the port of that name.
    Result<> connectPort(const std::string& name);

    // Voices of the synthesizer at the end of the last block, 0 for a port. [any]
    int activeVoices() const { return synthUnit == nullptr ? 0 : synthUnit->activeVoices(); }

    const std::shared_ptr<AVAudioEngine> engine;
    std::shared_ptr<AVAudioUnitMIDIInstrument> instrument; // null before a connection
    std::shared_ptr<SequencedUnit> sequencedUnit;          // the instrument's, null where it is not sequenced

private:
    Result<> connect(const std::shared_ptr<AVAudioUnitMIDIInstrument>& unit);
    std::shared_ptr<AUAudioUnit> sequenced(std::shared_ptr<AUAudioUnit> unit);

    const bool isLimited;
    const bool isSequenced;
    std::shared_ptr<AudioUnitMIDISynth> synthesizer;
    std::shared_ptr<MIDISynthUnit> synthUnit;   // null for a port
    std::shared_ptr<AVAudioUnitEffect> limiter; // null without
};

} // namespace volvelle
