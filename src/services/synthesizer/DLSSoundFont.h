#pragma once

#include "services/synthesizer/DLSFile.h"
#include "services/synthesizer/DLSVoiceSettings.h"

#include <fluidsynth.h>

#include <memory>
#include <optional>
#include <string>
#include <vector>

// Private to the library: makes a bank of downloadable sounds playable by the synthesizer.
namespace volvelle {

struct FluidDeleter {
    void operator()(fluid_sample_t* sample) const { delete_fluid_sample(sample); }

    void operator()(fluid_mod_t* modulator) const { delete_fluid_mod(modulator); }

    void operator()(fluid_preset_t* preset) const { delete_fluid_preset(preset); }

    void operator()(fluid_synth_t* synth) const { delete_fluid_synth(synth); }

    void operator()(fluid_settings_t* settings) const { delete_fluid_settings(settings); }
};

template <class T>
using FluidPointer = std::unique_ptr<T, FluidDeleter>;

class DLSSoundFont;

// A region, ready to be played.
struct DLSVoice {
    DLSRegion region;
    std::vector<VoiceGenerator> generators;
};

// An articulation, ready to be played.
struct DLSVoiceArticulation {
    DLSVoiceSettings settings;
    std::vector<FluidPointer<fluid_mod_t>> modulators;
};

// One instrument, as the synthesizer finds it.
struct DLSPreset {
    DLSSoundFont* font = nullptr;
    int bank = 0; // 128 for drums
    int program = 0;
    std::string name;
    std::vector<DLSVoice> voices;
    FluidPointer<fluid_preset_t> handle;
};

// The bank of one synthesizer. Keeps the samples alive; the synthesizer owns it. Starting a note allocates
// nothing of its own.
class DLSSoundFont {
public:
    static constexpr int drumBank = 128;
    static constexpr int maximumVoices = 64; // of one note

    // Offers the synthesizer a loader that gives `file` to the next load, and nothing to later ones. It is
    // asked before the synthesizer's own. [main, worker] Not while the synthesizer renders.
    static bool offer(fluid_synth_t* synth, DLSFile file);

    DLSSoundFont(fluid_sfont_t* handle, DLSFile bank, std::string name);
    DLSSoundFont(const DLSSoundFont&) = delete;
    DLSSoundFont& operator=(const DLSSoundFont&) = delete;

    // [render]
    fluid_preset_t* preset(int bank, int program);
    int startNote(const DLSPreset& preset, fluid_synth_t* synth, int channel, int key, int velocity);

    fluid_sfont_t* handle = nullptr;
    std::string name;
    std::vector<std::unique_ptr<DLSPreset>> presets; // by bank and program, each pair once
    std::size_t walked = 0;                          // how many of them an iteration has passed

private:
    void addSamples();
    void addArticulations();
    void addPreset(const DLSInstrument& instrument);
    bool startVoice(const DLSVoice& voice, fluid_synth_t* synth, int channel, int key, int velocity);

    DLSFile file; // its waves are what the samples point to
    std::vector<FluidPointer<fluid_sample_t>> samples;
    std::vector<DLSVoiceArticulation> articulations; // of the file, and after them that of a bare voice
};

} // namespace volvelle
