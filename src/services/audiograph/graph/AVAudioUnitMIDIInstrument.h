#pragma once

#include "services/audiograph/graph/AVAudioUnit.h"

namespace volvelle {

// The node of a unit that is played by MIDI.
class AVAudioUnitMIDIInstrument : public AVAudioUnit {
public:
    // Null where no such component is registered. [main]
    static std::shared_ptr<AVAudioUnitMIDIInstrument> make(const AudioComponentDescription& description);

    // Null without a unit. [main]
    static std::shared_ptr<AVAudioUnitMIDIInstrument> of(std::shared_ptr<AUAudioUnit> unit);

    using AVAudioUnit::AVAudioUnit;

    // A factor on what the instrument sounds, 1.0 at first; a change is spread over one block. [any]
    float volume() const { return gain.load(std::memory_order_relaxed); }

    void setVolume(float value) { gain.store(value, std::memory_order_relaxed); }

    // Kept for whoever asks; a synthesizer has no rate to change. [any]
    float rate() const { return storedRate.load(std::memory_order_relaxed); }

    void setRate(float value) { storedRate.store(value, std::memory_order_relaxed); }

private:
    std::atomic<float> storedRate{1.0F};
};

} // namespace volvelle
