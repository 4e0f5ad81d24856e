#include "services/synthesizer/DLSSoundFont.h"

#include "base/Console.h"
#include "base/Text.h"

#include <algorithm>
#include <utility>

namespace volvelle {

namespace {

constexpr int sampleKey = 60;
constexpr std::size_t shortestOwnLoop = 20; // frames; below, the level that counts as silence cannot be told

DLSPreset& presetOf(fluid_preset_t* preset)
{
    return *static_cast<DLSPreset*>(fluid_preset_get_data(preset));
}

DLSSoundFont& fontOf(fluid_sfont_t* font)
{
    return *static_cast<DLSSoundFont*>(fluid_sfont_get_data(font));
}

const char* presetName(fluid_preset_t* preset)
{
    return presetOf(preset).name.c_str();
}

int presetBank(fluid_preset_t* preset)
{
    return presetOf(preset).bank;
}

int presetProgram(fluid_preset_t* preset)
{
    return presetOf(preset).program;
}

int presetNote(fluid_preset_t* preset, fluid_synth_t* synth, int channel, int key, int velocity)
{
    const DLSPreset& own = presetOf(preset);
    return own.font->startNote(own, synth, channel, key, velocity);
}

// The font owns its presets.
void presetFree(fluid_preset_t* /*preset*/) {}

const char* fontName(fluid_sfont_t* font)
{
    return fontOf(font).name.c_str();
}

fluid_preset_t* fontPreset(fluid_sfont_t* font, int bank, int program)
{
    return fontOf(font).preset(bank, program);
}

void fontWalk(fluid_sfont_t* font)
{
    fontOf(font).walked = 0;
}

fluid_preset_t* fontNext(fluid_sfont_t* font)
{
    DLSSoundFont& own = fontOf(font);
    return own.walked < own.presets.size() ? own.presets[own.walked++]->handle.get() : nullptr;
}

int fontFree(fluid_sfont_t* font)
{
    delete &fontOf(font);
    delete_fluid_sfont(font);
    return 0;
}

using Offer = std::optional<DLSFile>;

fluid_sfont_t* loaderLoad(fluid_sfloader_t* loader, const char* name)
{
    auto& offered = *static_cast<Offer*>(fluid_sfloader_get_data(loader));
    if (!offered) {
        return nullptr;
    }
    fluid_sfont_t* font = new_fluid_sfont(fontName, fontPreset, fontWalk, fontNext, fontFree);
    if (font == nullptr) {
        return nullptr;
    }
    auto own = std::make_unique<DLSSoundFont>(font, std::move(*offered), name);
    offered.reset();
    fluid_sfont_set_data(font, own.release());
    return font;
}

void loaderFree(fluid_sfloader_t* loader)
{
    delete static_cast<Offer*>(fluid_sfloader_get_data(loader));
    delete_fluid_sfloader(loader);
}

} // namespace

bool DLSSoundFont::offer(fluid_synth_t* synth, DLSFile file)
{
    fluid_sfloader_t* loader = new_fluid_sfloader(loaderLoad, loaderFree);
    if (loader == nullptr) {
        return false;
    }
    fluid_sfloader_set_data(loader, std::make_unique<Offer>(std::move(file)).release());
    fluid_synth_add_sfloader(synth, loader);
    return true;
}

DLSSoundFont::DLSSoundFont(fluid_sfont_t* handle, DLSFile bank, std::string bankName)
    : handle(handle), name(std::move(bankName)), file(std::move(bank))
{
    addSamples();
    addArticulations();
    for (const DLSInstrument& instrument : file.instruments) {
        if (!instrument.regions.empty()) {
            addPreset(instrument);
        }
    }
    const auto place = [](const std::unique_ptr<DLSPreset>& preset) {
        return std::pair(preset->bank, preset->program);
    };
    std::ranges::stable_sort(presets, {}, place);
    const auto repeated = std::ranges::unique(presets, {}, place);
    presets.erase(repeated.begin(), repeated.end());
}

void DLSSoundFont::addSamples()
{
    for (DLSWave& wave : file.waves) {
        FluidPointer<fluid_sample_t> sample(new_fluid_sample());
        if (sample && !wave.samples.empty()) {
            constexpr int keepWhereItIs = 0;
            fluid_sample_set_sound_data(sample.get(), wave.samples.data(), nullptr,
                                        static_cast<unsigned>(wave.samples.size()), wave.sampleRate,
                                        keepWhereItIs);
            fluid_sample_set_pitch(sample.get(), sampleKey, sampleFineTune(wave));
            const DLSLoop loop = sampleLoop(wave);
            fluid_sample_set_loop(sample.get(), loop.start, loop.start + loop.length);
            if (loop.length >= shortestOwnLoop) {
                fluid_voice_optimize_sample(sample.get());
            }
        }
        samples.push_back(std::move(sample));
    }
}

void DLSSoundFont::addArticulations()
{
    int unknown = 0;
    file.articulations.emplace_back();
    for (const DLSArticulation& articulation : file.articulations) {
        DLSVoiceArticulation ready{DLSVoiceSettings::of(articulation), {}};
        unknown += ready.settings.unknownConnections;
        for (const VoiceModulator& values : ready.settings.modulators) {
            FluidPointer<fluid_mod_t> modulator(new_fluid_mod());
            fluid_mod_set_source1(modulator.get(), values.source1, values.flags1);
            fluid_mod_set_source2(modulator.get(), values.source2, values.flags2);
            fluid_mod_set_dest(modulator.get(), values.generator);
            fluid_mod_set_amount(modulator.get(), values.amount);
            ready.modulators.push_back(std::move(modulator));
        }
        articulations.push_back(std::move(ready));
    }
    if (unknown > 0) {
        debugprint("The sound bank has ", unknown, " connections that are not played.");
    }
}

void DLSSoundFont::addPreset(const DLSInstrument& instrument)
{
    auto preset = std::make_unique<DLSPreset>();
    preset->font = this;
    preset->bank = instrument.isDrums ? drumBank : instrument.bank;
    preset->program = instrument.program;
    preset->name = instrument.name;
    for (DLSRegion region : instrument.regions) {
        if (region.articulation == DLSRegion::none) {
            region.articulation = static_cast<int>(articulations.size()) - 1;
        }
        const auto& settings = articulations[static_cast<std::size_t>(region.articulation)].settings;
        const DLSWave& wave = file.waves[static_cast<std::size_t>(region.wave)];
        auto generators = regionGenerators(region, wave, settings);
        preset->voices.push_back({region, std::move(generators)});
    }
    preset->handle.reset(
        new_fluid_preset(handle, presetName, presetBank, presetProgram, presetNote, presetFree));
    if (preset->handle) {
        fluid_preset_set_data(preset->handle.get(), preset.get());
        presets.push_back(std::move(preset));
    }
}

fluid_preset_t* DLSSoundFont::preset(int bank, int program)
{
    const auto found =
        std::ranges::lower_bound(presets, std::pair(bank, program), {},
                                 [](const auto& preset) { return std::pair(preset->bank, preset->program); });
    const bool isThere = found != presets.end() && (*found)->bank == bank && (*found)->program == program;
    return isThere ? (*found)->handle.get() : nullptr;
}

int DLSSoundFont::startNote(const DLSPreset& preset, fluid_synth_t* synth, int channel, int key, int velocity)
{
    int started = 0;
    for (const DLSVoice& voice : preset.voices) {
        const DLSRegion& region = voice.region;
        const bool isMeant = key >= region.lowKey && key <= region.highKey &&
                             velocity >= region.lowVelocity && velocity <= region.highVelocity;
        if (!isMeant || started == maximumVoices) {
            continue;
        }
        if (!startVoice(voice, synth, channel, key, velocity)) {
            return FLUID_FAILED;
        }
        started += 1;
    }
    return FLUID_OK;
}

bool DLSSoundFont::startVoice(const DLSVoice& voice, fluid_synth_t* synth, int channel, int key, int velocity)
{
    fluid_sample_t* sample = samples[static_cast<std::size_t>(voice.region.wave)].get();
    fluid_voice_t* sounding = fluid_synth_alloc_voice(synth, sample, channel, key, velocity);
    if (sounding == nullptr) {
        return false;
    }
    const auto& articulation = articulations[static_cast<std::size_t>(voice.region.articulation)];
    for (const VoiceGenerator& set : articulation.settings.generators) {
        fluid_voice_gen_set(sounding, set.generator, static_cast<float>(set.value));
    }
    for (const VoiceGenerator& set : voice.generators) {
        fluid_voice_gen_set(sounding, set.generator, static_cast<float>(set.value));
    }
    for (const FluidPointer<fluid_mod_t>& modulator : articulation.modulators) {
        fluid_voice_add_mod(sounding, modulator.get(), FLUID_VOICE_OVERWRITE);
    }
    fluid_synth_start_voice(synth, sounding);
    return true;
}

} // namespace volvelle
