#include "tools/sf2dls/SoundFontZones.h"

#include <algorithm>
#include <optional>
#include <utility>

namespace volvelle {

namespace {

// What a SoundFont player moves by itself and a bank of downloadable sounds must be told.
constexpr std::array defaultModulators{
    SoundFontModulator{0x0081, Generator::vibratoToPitch, 50, 0, 0}, // modulation wheel
    SoundFontModulator{0x000D, Generator::vibratoToPitch, 50, 0, 0}, // channel pressure
    SoundFontModulator{0x00DB, Generator::reverb, 200, 0, 0},
    SoundFontModulator{0x00DD, Generator::chorus, 200, 0, 0},
};

constexpr std::array relative{
    Generator::lfoToPitch,
    Generator::vibratoToPitch,
    Generator::modulationEnvelopeToPitch,
    Generator::cutoff,
    Generator::resonance,
    Generator::lfoToCutoff,
    Generator::modulationEnvelopeToCutoff,
    Generator::lfoToVolume,
    Generator::chorus,
    Generator::reverb,
    Generator::pan,
    Generator::lfoDelay,
    Generator::lfoFrequency,
    Generator::vibratoDelay,
    Generator::vibratoFrequency,
    Generator::modulationDelay,
    Generator::modulationAttack,
    Generator::modulationHold,
    Generator::modulationDecay,
    Generator::modulationSustain,
    Generator::modulationRelease,
    Generator::keyToModulationHold,
    Generator::keyToModulationDecay,
    Generator::volumeDelay,
    Generator::volumeAttack,
    Generator::volumeHold,
    Generator::volumeDecay,
    Generator::volumeSustain,
    Generator::volumeRelease,
    Generator::keyToVolumeHold,
    Generator::keyToVolumeDecay,
    Generator::attenuation,
    Generator::coarseTune,
    Generator::fineTune,
    Generator::scaleTuning,
};

// The settings of one zone, each only where the zone has it.
struct ZoneSettings {
    KeyRange keys;
    KeyRange velocities;
    std::array<std::optional<double>, Generator::count> values;
    std::vector<SoundFontModulator> modulators;

    void take(const SoundFontZone& zone);
    void put(const SoundFontModulator& modulator);
};

KeyRange rangeIn(std::int16_t amount)
{
    const auto bits = static_cast<std::uint16_t>(amount);
    return {bits & 0x7F, (bits >> 8) & 0x7F};
}

void ZoneSettings::take(const SoundFontZone& zone)
{
    for (const SoundFontGenerator& generator : zone.generators) {
        if (generator.number == Generator::keyRange) {
            keys = rangeIn(generator.amount);
        } else if (generator.number == Generator::velocityRange) {
            velocities = rangeIn(generator.amount);
        } else if (generator.number < Generator::count) {
            const bool isIndex =
                generator.number == Generator::instrument || generator.number == Generator::sample;
            values[generator.number] =
                isIndex ? static_cast<std::uint16_t>(generator.amount) : generator.amount;
        }
    }
    std::ranges::for_each(zone.modulators, [this](const SoundFontModulator& modulator) { put(modulator); });
}

void ZoneSettings::put(const SoundFontModulator& modulator)
{
    const auto same =
        std::ranges::find_if(modulators, [&](const auto& other) { return other.isLike(modulator); });
    if (same == modulators.end()) {
        modulators.push_back(modulator);
    } else {
        same->amount = modulator.amount;
    }
}

std::optional<std::size_t> indexIn(const ZoneSettings& settings, int generator, std::size_t count)
{
    const auto value = settings.values[static_cast<std::size_t>(generator)];
    const auto index = static_cast<std::size_t>(value.value_or(0.0));
    return value && index < count ? std::optional(index) : std::nullopt;
}

SoundFontVoice joined(const ZoneSettings& preset, const ZoneSettings& instrument)
{
    SoundFontVoice voice;
    voice.keys = instrument.keys.within(preset.keys);
    voice.velocities = instrument.velocities.within(preset.velocities);
    for (std::size_t i = 0; i < voice.values.size(); ++i) {
        voice.values[i] = instrument.values[i].value_or(voice.values[i]);
    }
    for (const int generator : relative) {
        const auto i = static_cast<std::size_t>(generator);
        voice.values[i] += preset.values[i].value_or(0.0);
    }
    ZoneSettings modulators;
    modulators.modulators.assign(defaultModulators.begin(), defaultModulators.end());
    std::ranges::for_each(instrument.modulators, [&](const auto& modulator) { modulators.put(modulator); });
    for (SoundFontModulator modulator : preset.modulators) {
        // A preset adds to what its instrument has.
        const auto same = std::ranges::find_if(modulators.modulators,
                                               [&](const auto& other) { return other.isLike(modulator); });
        const int before = same == modulators.modulators.end() ? 0 : same->amount;
        modulator.amount = static_cast<std::int16_t>(std::clamp(before + modulator.amount, -32768, 32767));
        modulators.put(modulator);
    }
    voice.modulators = std::move(modulators.modulators);
    return voice;
}

void addInstrument(const SoundFontFile& file, const ZoneSettings& preset, std::size_t index, std::size_t room,
                   std::vector<SoundFontVoice>& voices)
{
    const SoundFontInstrument& instrument = file.instruments[index];
    ZoneSettings global;
    for (std::size_t i = instrument.firstZone; i < instrument.endZone && voices.size() < room; ++i) {
        ZoneSettings zone = global;
        zone.take(file.instrumentZone(i));
        const auto sample = indexIn(zone, Generator::sample, file.samples.size());
        if (!sample) {
            global = i == instrument.firstZone ? zone : global;
            continue;
        }
        SoundFontVoice voice = joined(preset, zone);
        voice.sample = *sample;
        if (!voice.keys.isEmpty() && !voice.velocities.isEmpty()) {
            voices.push_back(std::move(voice));
        }
    }
}

} // namespace

KeyRange KeyRange::within(const KeyRange& other) const
{
    return {std::max(low, other.low), std::min(high, other.high)};
}

SoundFontVoice::SoundFontVoice()
{
    using namespace Generator;
    for (const int time :
         {lfoDelay, vibratoDelay, modulationDelay, modulationAttack, modulationHold, modulationDecay,
          modulationRelease, volumeDelay, volumeAttack, volumeHold, volumeDecay, volumeRelease}) {
        values[static_cast<std::size_t>(time)] = shortestTime;
    }
    values[cutoff] = 13500.0;
    values[scaleTuning] = 100.0;
    values[rootKey] = -1.0;
    values[Generator::keyNumber] = -1.0;
    values[velocity] = -1.0;
}

std::vector<SoundFontVoice> voicesOf(const SoundFontFile& file, const SoundFontPreset& preset,
                                     std::size_t room)
{
    std::vector<SoundFontVoice> voices;
    ZoneSettings global;
    for (std::size_t i = preset.firstZone; i < preset.endZone && voices.size() < room; ++i) {
        ZoneSettings zone = global;
        zone.take(file.presetZone(i));
        const auto instrument = indexIn(zone, Generator::instrument, file.instruments.size());
        if (instrument) {
            addInstrument(file, zone, *instrument, room, voices);
        } else if (i == preset.firstZone) {
            global = zone;
        }
    }
    return voices;
}

} // namespace volvelle
