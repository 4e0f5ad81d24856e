#pragma once

#include "services/synthesizer/DLSFile.h"

#include <cstddef>
#include <vector>

namespace volvelle {

// A fixed parameter of a voice, by its SoundFont generator number and in its unit.
struct VoiceGenerator {
    int generator = 0;
    double value = 0.0;
};

// A moving parameter: two sources with SoundFont controller numbers and curve flags.
struct VoiceModulator {
    int source1 = 0;
    int flags1 = 0;
    int source2 = 0;
    int flags2 = 0;
    int generator = 0;
    double amount = 0.0;
};

// An articulation in the terms of a SoundFont voice. Pitch and gain stand apart: a region adds its own.
struct DLSVoiceSettings {
    static constexpr std::size_t maximumModulators = 32;

    // The settings of an articulation, those of a bare voice for none. [any]
    static DLSVoiceSettings of(const DLSArticulation& articulation);
    DLSVoiceSettings();

    std::vector<VoiceGenerator> generators; // each generator at most once
    std::vector<VoiceModulator> modulators; // at most maximumModulators
    double pitch = 0.0;                     // cents
    double attenuation = 0.0;               // tenths of a decibel
    double scaleTuning = 100.0;             // cents a key
    int unknownConnections = 0;             // left out

private:
    void add(const DLSConnection& connection);
    bool addFixed(const DLSConnection& connection, double amount);
    bool addByKey(const DLSConnection& connection, double amount);
    bool addSwinging(const DLSConnection& connection, double amount);
    bool addControlled(const DLSConnection& connection, double amount);
    void addModulator(const VoiceModulator& modulator);
    void set(int generator, double value);
    void shift(int generator, double difference, double from);
};

// The loop that the sample of a wave has by itself; of no length for none.
DLSLoop sampleLoop(const DLSWave& wave);

// The cents that the sample of a wave is corrected by; a region's tuning counts from there.
int sampleFineTune(const DLSWave& wave);

// The generators of one region: pitch, level, loop (its distance from the sample's own) and key group.
std::vector<VoiceGenerator> regionGenerators(const DLSRegion& region, const DLSWave& wave,
                                             const DLSVoiceSettings& settings);

} // namespace volvelle
