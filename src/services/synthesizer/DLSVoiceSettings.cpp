#include "services/synthesizer/DLSVoiceSettings.h"

#include "services/synthesizer/SoundFontNumbers.h"

#include <algorithm>
#include <array>
#include <cmath>
#include <cstdint>
#include <cstdlib>
#include <optional>
#include <utility>

namespace volvelle {

namespace {

constexpr double keys = 128.0;
constexpr double middleKey = 60.0;
constexpr double defaultFrequency = -851.0; // 5 Hz
constexpr double defaultDelay = -7973.0;    // 10 ms
constexpr int noGenerator = -1;

enum class Unit { plain, time, sustain };

struct Target {
    std::uint16_t destination;
    int generator;
    Unit unit;
};

constexpr std::array targets{
    Target{DLSDestination::pan, Generator::pan, Unit::plain},
    Target{DLSDestination::chorus, Generator::chorus, Unit::plain},
    Target{DLSDestination::reverb, Generator::reverb, Unit::plain},
    Target{DLSDestination::lfoFrequency, Generator::lfoFrequency, Unit::plain},
    Target{DLSDestination::lfoDelay, Generator::lfoDelay, Unit::time},
    Target{DLSDestination::vibratoFrequency, Generator::vibratoFrequency, Unit::plain},
    Target{DLSDestination::vibratoDelay, Generator::vibratoDelay, Unit::time},
    Target{DLSDestination::volumeAttack, Generator::volumeAttack, Unit::time},
    Target{DLSDestination::volumeDecay, Generator::volumeDecay, Unit::time},
    Target{DLSDestination::volumeRelease, Generator::volumeRelease, Unit::time},
    Target{DLSDestination::volumeSustain, Generator::volumeSustain, Unit::sustain},
    Target{DLSDestination::volumeDelay, Generator::volumeDelay, Unit::time},
    Target{DLSDestination::volumeHold, Generator::volumeHold, Unit::time},
    Target{DLSDestination::modulationAttack, Generator::modulationAttack, Unit::time},
    Target{DLSDestination::modulationDecay, Generator::modulationDecay, Unit::time},
    Target{DLSDestination::modulationRelease, Generator::modulationRelease, Unit::time},
    Target{DLSDestination::modulationSustain, Generator::modulationSustain, Unit::sustain},
    Target{DLSDestination::modulationDelay, Generator::modulationDelay, Unit::time},
    Target{DLSDestination::modulationHold, Generator::modulationHold, Unit::time},
    Target{DLSDestination::cutoff, Generator::cutoff, Unit::plain},
    Target{DLSDestination::resonance, Generator::resonance, Unit::plain},
};

struct Pair {
    std::uint16_t source;
    std::uint16_t destination;
    int generator;
};

constexpr std::array swings{
    Pair{DLSSource::lfo, DLSDestination::pitch, Generator::lfoToPitch},
    Pair{DLSSource::lfo, DLSDestination::cutoff, Generator::lfoToCutoff},
    Pair{DLSSource::lfo, DLSDestination::gain, Generator::lfoToVolume},
    Pair{DLSSource::vibrato, DLSDestination::pitch, Generator::vibratoToPitch},
    Pair{DLSSource::modulationEnvelope, DLSDestination::pitch, Generator::modulationEnvelopeToPitch},
    Pair{DLSSource::modulationEnvelope, DLSDestination::cutoff, Generator::modulationEnvelopeToCutoff},
};

constexpr std::array keyed{
    Pair{DLSDestination::volumeHold, Generator::volumeHold, Generator::keyToVolumeHold},
    Pair{DLSDestination::volumeDecay, Generator::volumeDecay, Generator::keyToVolumeDecay},
    Pair{DLSDestination::modulationHold, Generator::modulationHold, Generator::keyToModulationHold},
    Pair{DLSDestination::modulationDecay, Generator::modulationDecay, Generator::keyToModulationDecay},
};

int swingGenerator(const DLSConnection& connection)
{
    const auto* found = std::ranges::find_if(swings, [&](const Pair& pair) {
        return pair.source == connection.source && pair.destination == connection.destination;
    });
    return found == swings.end() ? noGenerator : found->generator;
}

bool isSwinging(std::uint16_t source)
{
    return source == DLSSource::lfo || source == DLSSource::vibrato ||
           source == DLSSource::modulationEnvelope;
}

// The number and the kind flag of a source that a player moves.
std::optional<std::pair<int, int>> playedSource(std::uint16_t source)
{
    switch (source) {
    case DLSSource::none:
        return std::pair(ModulatorSource::none, 0);
    case DLSSource::velocity:
        return std::pair(ModulatorSource::velocity, 0);
    case DLSSource::keyNumber:
        return std::pair(ModulatorSource::keyNumber, 0);
    case DLSSource::pitchWheel:
        return std::pair(ModulatorSource::pitchWheel, 0);
    case DLSSource::keyPressure:
        return std::pair(ModulatorSource::keyPressure, 0);
    case DLSSource::channelPressure:
        return std::pair(ModulatorSource::channelPressure, 0);
    case DLSSource::bendRange:
        return std::pair(ModulatorSource::bendRange, 0);
    default:
        break;
    }
    if (source >= 0x80 && source <= 0xFF) {
        return std::pair(source & 0x7F, ModulatorSource::controller);
    }
    return std::nullopt;
}

int curveFlags(std::uint16_t transform, int shift, std::uint16_t bipolar, std::uint16_t inverted)
{
    const int curve = (transform >> shift) & DLSTransform::curveMask & 3;
    return (curve << ModulatorSource::curveShift) |
           ((transform & bipolar) != 0 ? ModulatorSource::bipolar : 0) |
           ((transform & inverted) != 0 ? ModulatorSource::inverted : 0);
}

int sourceFlags(std::uint16_t transform)
{
    return curveFlags(transform, DLSTransform::sourceCurveShift, DLSTransform::sourceBipolar,
                      DLSTransform::sourceInverted);
}

int controlFlags(std::uint16_t transform)
{
    return curveFlags(transform, DLSTransform::controlCurveShift, DLSTransform::controlBipolar,
                      DLSTransform::controlInverted);
}

// A distance in frames, fine and coarse, for one end of a loop.
void addOffset(std::vector<VoiceGenerator>& generators, int fine, double frames)
{
    constexpr double coarseStep = 32768.0;
    const double coarse = std::trunc(frames / coarseStep);
    const bool isStart = fine == Generator::loopStartOffset;
    generators.push_back(
        {isStart ? Generator::loopStartCoarseOffset : Generator::loopEndCoarseOffset, coarse});
    generators.push_back({fine, frames - coarse * coarseStep});
}

bool movesPitch(int generator)
{
    return generator == Generator::lfoToPitch || generator == Generator::vibratoToPitch ||
           generator == Generator::modulationEnvelopeToPitch || generator == Generator::fineTune;
}

// How far, in cents, oscillators, envelope and controllers can raise the pitch of a voice.
double greatestSwing(const DLSVoiceSettings& settings)
{
    constexpr double greatest = 12000.0; // of one of them
    double sum = 0.0;
    for (const VoiceGenerator& set : settings.generators) {
        sum += movesPitch(set.generator) ? std::min(std::abs(set.value), greatest) : 0.0;
    }
    for (const VoiceModulator& modulator : settings.modulators) {
        sum += movesPitch(modulator.generator) ? std::min(std::abs(modulator.amount), greatest) : 0.0;
    }
    return sum;
}

// What must be taken from the tuning of a region, in cents, so that no key makes its wave run faster than the
// player can follow: it goes round a short loop step by step.
double excessPitch(const DLSRegion& region, double scale, double unityNote, double fine, double swing)
{
    constexpr double greatest = 13200.0; // eleven octaves
    const double lowest = scale * (std::min<int>(region.lowKey, 127) - unityNote);
    const double highest = scale * (std::min<int>(region.highKey, 127) - unityNote);
    return std::max(0.0, std::max(lowest, highest) + fine + swing - greatest);
}

} // namespace

DLSVoiceSettings::DLSVoiceSettings()
{
    set(Generator::lfoFrequency, defaultFrequency);
    set(Generator::lfoDelay, defaultDelay);
    set(Generator::vibratoFrequency, defaultFrequency);
    set(Generator::vibratoDelay, defaultDelay);
}

DLSVoiceSettings DLSVoiceSettings::of(const DLSArticulation& articulation)
{
    DLSVoiceSettings settings;
    // Fixed values first: what a key adds to a time needs the time that it adds to.
    for (const bool isFixed : {true, false}) {
        for (const DLSConnection& connection : articulation) {
            if (isFixed == (connection.source == DLSSource::none)) {
                settings.add(connection);
            }
        }
    }
    return settings;
}

void DLSVoiceSettings::add(const DLSConnection& connection)
{
    const double amount = connection.scale / DLSConnection::unit;
    const bool isPlain = connection.control == DLSSource::none;
    bool isKnown = false;
    if (connection.source == DLSSource::none && isPlain) {
        isKnown = addFixed(connection, amount);
    } else if (isSwinging(connection.source)) {
        isKnown = addSwinging(connection, amount);
    } else if (connection.source == DLSSource::keyNumber && isPlain && addByKey(connection, amount)) {
        isKnown = true;
    } else {
        isKnown = addControlled(connection, amount);
    }
    unknownConnections += isKnown ? 0 : 1;
}

bool DLSVoiceSettings::addFixed(const DLSConnection& connection, double amount)
{
    if (connection.destination == DLSDestination::pitch) {
        pitch += amount;
        return true;
    }
    if (connection.destination == DLSDestination::gain) {
        attenuation -= amount;
        return true;
    }
    const auto* target = std::ranges::find(targets, connection.destination, &Target::destination);
    if (target == targets.end()) {
        return false;
    }
    if (target->unit == Unit::time) {
        // Key tracking widens what stands here beyond what a time may be.
        amount = std::clamp(amount, 4.0 * shortestTime, 4.0 * longestTime);
        amount = connection.scale == INT32_MIN ? shortestTime : amount;
    }
    set(target->generator, target->unit == Unit::sustain ? 1000.0 - amount : amount);
    return true;
}

bool DLSVoiceSettings::addByKey(const DLSConnection& connection, double amount)
{
    if (connection.destination == DLSDestination::pitch) {
        scaleTuning = amount / keys;
        return true;
    }
    const auto* pair = std::ranges::find(keyed, connection.destination, &Pair::source);
    if (pair == keyed.end()) {
        return false;
    }
    const double perKey = -amount / keys;
    set(pair->generator, perKey);
    shift(pair->destination, -middleKey * perKey, shortestTime);
    return true;
}

bool DLSVoiceSettings::addSwinging(const DLSConnection& connection, double amount)
{
    const int generator = swingGenerator(connection);
    const auto control = playedSource(connection.control);
    if (generator == noGenerator || !control) {
        return false;
    }
    if (connection.control == DLSSource::none) {
        set(generator, amount);
    } else {
        addModulator(
            {control->first, control->second | controlFlags(connection.transform), 0, 0, generator, amount});
    }
    return true;
}

bool DLSVoiceSettings::addControlled(const DLSConnection& connection, double amount)
{
    if (connection.source == DLSSource::volumeEnvelope || connection.source == DLSSource::pitchWheel) {
        // What these do to level and pitch is built in.
        return connection.destination == DLSDestination::gain ||
               connection.destination == DLSDestination::pitch;
    }
    const auto source = playedSource(connection.source);
    const auto control = playedSource(connection.control);
    if (!source || !control || connection.source == DLSSource::none) {
        return false;
    }
    int generator = noGenerator;
    if (connection.destination == DLSDestination::gain) {
        generator = Generator::attenuation;
        amount = -amount;
    } else if (connection.destination == DLSDestination::pitch) {
        generator = Generator::fineTune;
    } else {
        const auto* target = std::ranges::find(targets, connection.destination, &Target::destination);
        generator = target == targets.end() ? noGenerator : target->generator;
        amount = target != targets.end() && target->unit == Unit::sustain ? -amount : amount;
    }
    if (generator != noGenerator) {
        const int flags2 =
            connection.control == DLSSource::none ? 0 : control->second | controlFlags(connection.transform);
        addModulator({source->first, source->second | sourceFlags(connection.transform), control->first,
                      flags2, generator, amount});
    }
    return generator != noGenerator;
}

void DLSVoiceSettings::addModulator(const VoiceModulator& modulator)
{
    if (modulators.size() < maximumModulators) {
        modulators.push_back(modulator);
    } else {
        unknownConnections += 1;
    }
}

void DLSVoiceSettings::set(int generator, double value)
{
    const auto found = std::ranges::find(generators, generator, &VoiceGenerator::generator);
    if (found == generators.end()) {
        generators.push_back({generator, value});
    } else {
        found->value = value;
    }
}

void DLSVoiceSettings::shift(int generator, double difference, double from)
{
    const auto found = std::ranges::find(generators, generator, &VoiceGenerator::generator);
    set(generator, (found == generators.end() ? from : found->value) + difference);
}

DLSLoop sampleLoop(const DLSWave& wave)
{
    return wave.tuning && wave.tuning->loop ? *wave.tuning->loop : DLSLoop{};
}

int sampleFineTune(const DLSWave& wave)
{
    constexpr int greatest = 99;
    const int written = wave.tuning ? wave.tuning->fineTune : 0;
    return std::abs(written) <= greatest ? written : 0;
}

std::vector<VoiceGenerator> regionGenerators(const DLSRegion& region, const DLSWave& wave,
                                             const DLSVoiceSettings& settings)
{
    const DLSLoop waveLoop = sampleLoop(wave);
    const DLSTuning tuning = region.tuning.value_or(wave.tuning.value_or(DLSTuning{}));
    const double scale = settings.scaleTuning;
    const double ownFine = scale / 100.0 * sampleFineTune(wave);
    const double heardFine = tuning.fineTune + settings.pitch + (scale - 100.0) * tuning.unityNote;
    const double excess = excessPitch(region, scale, tuning.unityNote, heardFine, greatestSwing(settings));
    const double level = tuning.gain / DLSConnection::unit - settings.attenuation;
    std::vector<VoiceGenerator> generators{
        {Generator::rootKey, tuning.unityNote * 1.0},
        {Generator::scaleTuning, scale},
        {Generator::fineTune, heardFine - ownFine - excess},
        {Generator::attenuation, std::clamp(-level, 0.0, 1440.0)},
    };
    if (region.keyGroup != 0) {
        generators.push_back({Generator::exclusiveClass, region.keyGroup * 1.0});
    }
    if (tuning.loop) {
        const double start = tuning.loop->start;
        const double end = start + tuning.loop->length;
        generators.push_back({Generator::sampleModes, tuning.loop->endsOnRelease ? 3.0 : 1.0});
        addOffset(generators, Generator::loopStartOffset, start - waveLoop.start);
        addOffset(generators, Generator::loopEndOffset, end - waveLoop.start - waveLoop.length);
    }
    return generators;
}

} // namespace volvelle
