#include "tools/sf2dls/ArticulationWriter.h"

#include <algorithm>
#include <array>
#include <cmath>
#include <limits>
#include <optional>
#include <utility>

namespace volvelle {

namespace {

constexpr double keys = 128.0;
constexpr double middleKey = 60.0;

struct Target {
    int generator;
    std::uint16_t source;
    std::uint16_t destination;
};

constexpr std::array plain{
    Target{Generator::lfoToPitch, DLSSource::lfo, DLSDestination::pitch},
    Target{Generator::lfoToCutoff, DLSSource::lfo, DLSDestination::cutoff},
    Target{Generator::lfoToVolume, DLSSource::lfo, DLSDestination::gain},
    Target{Generator::vibratoToPitch, DLSSource::vibrato, DLSDestination::pitch},
    Target{Generator::modulationEnvelopeToPitch, DLSSource::modulationEnvelope, DLSDestination::pitch},
    Target{Generator::modulationEnvelopeToCutoff, DLSSource::modulationEnvelope, DLSDestination::cutoff},
    Target{Generator::resonance, DLSSource::none, DLSDestination::resonance},
    Target{Generator::chorus, DLSSource::none, DLSDestination::chorus},
    Target{Generator::reverb, DLSSource::none, DLSDestination::reverb},
    Target{Generator::pan, DLSSource::none, DLSDestination::pan},
};

constexpr std::array times{
    Target{Generator::modulationDelay, DLSSource::none, DLSDestination::modulationDelay},
    Target{Generator::modulationAttack, DLSSource::none, DLSDestination::modulationAttack},
    Target{Generator::modulationRelease, DLSSource::none, DLSDestination::modulationRelease},
    Target{Generator::volumeDelay, DLSSource::none, DLSDestination::volumeDelay},
    Target{Generator::volumeAttack, DLSSource::none, DLSDestination::volumeAttack},
    Target{Generator::volumeRelease, DLSSource::none, DLSDestination::volumeRelease},
};

struct KeyedTime {
    int time;
    int perKey;
    std::uint16_t destination;
};

constexpr std::array keyedTimes{
    KeyedTime{Generator::volumeHold, Generator::keyToVolumeHold, DLSDestination::volumeHold},
    KeyedTime{Generator::volumeDecay, Generator::keyToVolumeDecay, DLSDestination::volumeDecay},
    KeyedTime{Generator::modulationHold, Generator::keyToModulationHold, DLSDestination::modulationHold},
    KeyedTime{Generator::modulationDecay, Generator::keyToModulationDecay, DLSDestination::modulationDecay},
};

class Writer {
public:
    explicit Writer(const SoundFontVoice& described) : voice(described) {}

    void connect(std::uint16_t source, std::uint16_t destination, double amount, std::uint16_t control = 0,
                 std::uint16_t transform = 0);
    void writePlain();
    void writeTimes();
    void writePitch(int unityNote);
    bool writeModulator(const SoundFontModulator& modulator);

    DLSArticulation articulation;

private:
    const SoundFontVoice& voice;
};

void Writer::connect(std::uint16_t source, std::uint16_t destination, double amount, std::uint16_t control,
                     std::uint16_t transform)
{
    constexpr double greatest = std::numeric_limits<std::int32_t>::max();
    const double scale = std::clamp(std::round(amount * DLSConnection::unit), -greatest, greatest);
    articulation.push_back({source, control, destination, transform, static_cast<std::int32_t>(scale)});
}

void Writer::writePlain()
{
    for (const Target& target : plain) {
        if (voice[target.generator] != 0.0) {
            connect(target.source, target.destination, voice[target.generator]);
        }
    }
    if (voice[Generator::cutoff] < 13500.0) {
        connect(DLSSource::none, DLSDestination::cutoff, voice[Generator::cutoff]);
    }
    connect(DLSSource::none, DLSDestination::lfoFrequency, voice[Generator::lfoFrequency]);
    connect(DLSSource::none, DLSDestination::lfoDelay, voice[Generator::lfoDelay]);
    connect(DLSSource::none, DLSDestination::vibratoFrequency, voice[Generator::vibratoFrequency]);
    connect(DLSSource::none, DLSDestination::vibratoDelay, voice[Generator::vibratoDelay]);
    connect(DLSSource::none, DLSDestination::volumeSustain, 1000.0 - voice[Generator::volumeSustain]);
    connect(DLSSource::none, DLSDestination::modulationSustain, 1000.0 - voice[Generator::modulationSustain]);
}

void Writer::writeTimes()
{
    for (const Target& target : times) {
        if (voice[target.generator] > shortestTime) {
            connect(target.source, target.destination, voice[target.generator]);
        }
    }
    for (const KeyedTime& keyed : keyedTimes) {
        const double perKey = voice[keyed.perKey];
        const double base = voice[keyed.time] + middleKey * perKey;
        if (perKey != 0.0) {
            connect(DLSSource::keyNumber, keyed.destination, -keys * perKey);
        }
        if (perKey != 0.0 || base > shortestTime) {
            connect(DLSSource::none, keyed.destination, base);
        }
    }
}

void Writer::writePitch(int unityNote)
{
    const double fixedKey = voice[Generator::keyNumber];
    const double scale = fixedKey >= 0.0 ? 0.0 : voice[Generator::scaleTuning];
    if (scale != 100.0) {
        const double written = voice[Generator::scaleTuning];
        const double key = std::max(fixedKey, 0.0);
        connect(DLSSource::keyNumber, DLSDestination::pitch, keys * scale);
        connect(DLSSource::none, DLSDestination::pitch, (100.0 - written) * unityNote + written * key);
    }
}

std::optional<std::uint16_t> playedSource(std::uint16_t operand)
{
    const auto index = static_cast<std::uint16_t>(operand & 0x7FU);
    if ((operand & 0x80U) != 0) {
        constexpr std::array known{DLSSource::controller1,  DLSSource::controller7,  DLSSource::controller10,
                                   DLSSource::controller11, DLSSource::controller91, DLSSource::controller93};
        const auto code = static_cast<std::uint16_t>(index | 0x80U);
        return std::ranges::find(known, code) == known.end() ? std::nullopt : std::optional(code);
    }
    switch (index) {
    case ModulatorSource::none:
        return DLSSource::none;
    case ModulatorSource::velocity:
        return DLSSource::velocity;
    case ModulatorSource::keyNumber:
        return DLSSource::keyNumber;
    case ModulatorSource::keyPressure:
        return DLSSource::keyPressure;
    case ModulatorSource::channelPressure:
        return DLSSource::channelPressure;
    default:
        return std::nullopt;
    }
}

std::uint16_t curve(std::uint16_t operand, int shift, std::uint16_t bipolar, std::uint16_t inverted)
{
    const unsigned shape = (operand >> 10U) & 3U;
    return static_cast<std::uint16_t>((shape << static_cast<unsigned>(shift)) |
                                      ((operand & 0x200U) != 0 ? bipolar : 0U) |
                                      ((operand & 0x100U) != 0 ? inverted : 0U));
}

std::uint16_t controlCurve(std::uint16_t operand)
{
    return curve(operand, DLSTransform::controlCurveShift, DLSTransform::controlBipolar,
                 DLSTransform::controlInverted);
}

std::optional<std::uint16_t> modulatedDestination(int generator, double& amount)
{
    for (const auto& target : times) {
        if (target.generator == generator) {
            return target.destination;
        }
    }
    switch (generator) {
    case Generator::attenuation:
        amount = -amount;
        return DLSDestination::gain;
    case Generator::fineTune:
        return DLSDestination::pitch;
    case Generator::cutoff:
        return DLSDestination::cutoff;
    case Generator::resonance:
        return DLSDestination::resonance;
    case Generator::pan:
        return DLSDestination::pan;
    case Generator::reverb:
        return DLSDestination::reverb;
    case Generator::chorus:
        return DLSDestination::chorus;
    default:
        return std::nullopt;
    }
}

bool Writer::writeModulator(const SoundFontModulator& modulator)
{
    const auto source = playedSource(modulator.source);
    const auto control = playedSource(modulator.amountSource);
    if (!source || !control || *source == DLSSource::none || modulator.transform != 0) {
        return false;
    }
    const auto* swing = std::ranges::find_if(plain, [&](const Target& target) {
        return target.generator == modulator.generator && target.source != DLSSource::none;
    });
    if (swing != plain.end()) {
        if (*control == DLSSource::none) {
            connect(swing->source, swing->destination, modulator.amount, *source,
                    controlCurve(modulator.source));
        }
        return *control == DLSSource::none;
    }
    double amount = modulator.amount;
    const auto destination = modulatedDestination(modulator.generator, amount);
    if (destination) {
        const std::uint16_t shape = curve(modulator.source, DLSTransform::sourceCurveShift,
                                          DLSTransform::sourceBipolar, DLSTransform::sourceInverted);
        const std::uint16_t amountShape =
            *control == DLSSource::none ? std::uint16_t{0} : controlCurve(modulator.amountSource);
        connect(*source, *destination, amount, *control, static_cast<std::uint16_t>(shape | amountShape));
    }
    return destination.has_value();
}

} // namespace

DLSArticulation articulationOf(const SoundFontVoice& voice, int unityNote, int& dropped)
{
    Writer writer(voice);
    writer.writePitch(unityNote);
    writer.writePlain();
    writer.writeTimes();
    for (const SoundFontModulator& modulator : voice.modulators) {
        dropped += writer.writeModulator(modulator) ? 0 : 1;
    }
    return std::move(writer.articulation);
}

} // namespace volvelle
