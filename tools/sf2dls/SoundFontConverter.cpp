#include "tools/sf2dls/SoundFontConverter.h"

#include "services/synthesizer/RIFFChunks.h"
#include "tools/sf2dls/ArticulationWriter.h"

#include <algorithm>
#include <cmath>
#include <utility>

namespace volvelle {

namespace {

constexpr int drumBank = 128;
constexpr double coarseStep = 32768.0; // frames
constexpr std::int64_t shortestWave = 8;

std::int64_t frames(const SoundFontVoice& voice, int fine, int coarse)
{
    return static_cast<std::int64_t>(voice[fine] + coarseStep * voice[coarse]);
}

int unityNoteOf(const SoundFontVoice& voice, const SoundFontSample& sample)
{
    const int written = static_cast<int>(voice[Generator::rootKey]);
    const int key = written >= 0 ? written : sample.key;
    return key > 127 ? 60 : key;
}

} // namespace

Result<DLSFile> SoundFontConverter::convert()
{
    for (const SoundFontPreset& preset : source.presets) {
        addPreset(preset);
        if (regionCount >= maximumRegions || waveBytes > maximumPoolCopies * source.pool.size()) {
            return failure("The SoundFont asks for more than its size justifies.");
        }
    }
    if (result.instruments.empty()) {
        return failure("The SoundFont has no sounds.");
    }
    return std::move(result);
}

void SoundFontConverter::addPreset(const SoundFontPreset& preset)
{
    DLSInstrument instrument;
    instrument.name = preset.name;
    instrument.isDrums = preset.bank == drumBank;
    instrument.bank = instrument.isDrums ? 0 : preset.bank & 0x7F;
    instrument.program = preset.program & 0x7F;
    for (const SoundFontVoice& voice : voicesOf(source, preset, maximumRegions - regionCount)) {
        if (const auto made = region(voice); made && waveBytes <= maximumPoolCopies * source.pool.size()) {
            instrument.regions.push_back(*made);
            regionCount += 1;
        } else {
            droppedVoices += 1;
        }
    }
    if (!instrument.regions.empty()) {
        result.instruments.push_back(std::move(instrument));
    }
}

std::optional<DLSRegion> SoundFontConverter::region(const SoundFontVoice& voice)
{
    const auto played = stretch(voice);
    if (!played) {
        return std::nullopt;
    }
    DLSRegion made;
    made.lowKey = static_cast<std::uint16_t>(voice.keys.low);
    made.highKey = static_cast<std::uint16_t>(voice.keys.high);
    made.lowVelocity = static_cast<std::uint16_t>(voice.velocities.low);
    made.highVelocity = static_cast<std::uint16_t>(voice.velocities.high);
    made.keyGroup = static_cast<std::uint16_t>(static_cast<int>(voice[Generator::exclusiveClass]) & 0x7F);
    made.tuning = tuning(voice, *played);
    made.wave = waveOf(*played);
    made.articulation = static_cast<int>(result.articulations.size());
    result.articulations.push_back(articulationOf(voice, made.tuning->unityNote, droppedModulators));
    return made;
}

std::optional<SoundFontConverter::Stretch> SoundFontConverter::stretch(const SoundFontVoice& voice) const
{
    constexpr unsigned readOnlyMemory = 0x8000;
    const SoundFontSample& sample = source.samples[voice.sample];
    const auto poolFrames = static_cast<std::int64_t>(source.pool.size() / 2);
    const std::int64_t start = std::max<std::int64_t>(
        sample.start + frames(voice, Generator::startOffset, Generator::startCoarseOffset), 0);
    const std::int64_t end =
        std::min(sample.end + frames(voice, Generator::endOffset, Generator::endCoarseOffset), poolFrames);
    const bool isThere = end - start >= shortestWave && (sample.type & readOnlyMemory) == 0;
    return isThere && sample.sampleRate >= 400 ? std::optional(Stretch(voice.sample, start, end))
                                               : std::nullopt;
}

int SoundFontConverter::waveOf(const Stretch& stretch)
{
    const auto [place, isNew] = waves.try_emplace(stretch, static_cast<int>(result.waves.size()));
    const auto [index, start, end] = stretch;
    waveBytes += isNew ? static_cast<std::size_t>(end - start) * 2 : 0;
    if (isNew && waveBytes <= maximumPoolCopies * source.pool.size()) {
        const SoundFontSample& sample = source.samples[index];
        DLSWave wave;
        wave.sampleRate = sample.sampleRate;
        wave.samples.reserve(static_cast<std::size_t>(end - start));
        for (std::int64_t i = start; i < end; ++i) {
            wave.samples.push_back(signed16(source.pool, static_cast<std::size_t>(i) * 2));
        }
        SoundFontVoice alone;
        alone.sample = index;
        alone.values[Generator::sampleModes] = 1.0;
        wave.tuning = tuning(alone, stretch);
        result.waves.push_back(std::move(wave));
    }
    return place->second;
}

DLSTuning SoundFontConverter::tuning(const SoundFontVoice& voice, const Stretch& stretch) const
{
    const SoundFontSample& sample = source.samples[voice.sample];
    const double tune = 100.0 * voice[Generator::coarseTune] + voice[Generator::fineTune] +
                        sample.correction * voice[Generator::scaleTuning] / 100.0;
    const double heard = std::clamp(voice[Generator::attenuation] * heardAttenuation, 0.0, 1440.0);
    DLSTuning made;
    made.unityNote = static_cast<std::uint16_t>(unityNoteOf(voice, sample));
    made.fineTune = static_cast<std::int16_t>(std::clamp(std::round(tune), -32768.0, 32767.0));
    made.gain = static_cast<std::int32_t>(std::round(-heard * DLSConnection::unit));
    made.loop = loop(voice, stretch);
    return made;
}

std::optional<DLSLoop> SoundFontConverter::loop(const SoundFontVoice& voice, const Stretch& stretch) const
{
    const int mode = static_cast<int>(voice[Generator::sampleModes]) & 3;
    const auto [index, first, last] = stretch;
    const SoundFontSample& sample = source.samples[index];
    const std::int64_t shiftStart =
        frames(voice, Generator::loopStartOffset, Generator::loopStartCoarseOffset);
    const std::int64_t shiftEnd = frames(voice, Generator::loopEndOffset, Generator::loopEndCoarseOffset);
    std::int64_t start = sample.loopStart + shiftStart;
    std::int64_t end = sample.loopEnd + shiftEnd;
    if (end < start) {
        std::swap(start, end);
    }
    start = std::clamp(start, first, last) - first;
    end = std::clamp(end, first, last) - first;
    if ((mode != 1 && mode != 3) || end - start < 2) {
        return std::nullopt;
    }
    return DLSLoop{mode == 3, static_cast<std::uint32_t>(start), static_cast<std::uint32_t>(end - start)};
}

} // namespace volvelle
