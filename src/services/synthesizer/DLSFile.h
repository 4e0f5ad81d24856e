#pragma once

#include "services/synthesizer/DLSConnection.h"

#include <cstdint>
#include <optional>
#include <string>
#include <vector>

// A bank of downloadable sounds as plain values: instruments made of regions, each of which plays a wave in
// the manner of an articulation.
namespace volvelle {

struct DLSLoop {
    bool endsOnRelease = false;
    std::uint32_t start = 0;  // frames
    std::uint32_t length = 0; // frames

    bool operator==(const DLSLoop&) const = default;
};

// How a wave is to be pitched and looped.
struct DLSTuning {
    std::uint16_t unityNote = 60;
    std::int16_t fineTune = 0; // cents
    std::int32_t gain = 0;     // in 65536ths of a tenth of a decibel
    std::optional<DLSLoop> loop;

    bool operator==(const DLSTuning&) const = default;
};

struct DLSWave {
    std::uint32_t sampleRate = 0; // Hz
    std::vector<std::int16_t> samples;
    std::optional<DLSTuning> tuning;
};

using DLSArticulation = std::vector<DLSConnection>;

struct DLSRegion {
    static constexpr int none = -1;

    std::uint16_t lowKey = 0;
    std::uint16_t highKey = 127;
    std::uint16_t lowVelocity = 0;
    std::uint16_t highVelocity = 127;
    std::uint16_t keyGroup = 0;      // 0 for none
    std::optional<DLSTuning> tuning; // goes before the wave's own
    int wave = none;                 // index into the file's waves
    int articulation = none;         // index into the file's articulations; none: the instrument's
};

struct DLSInstrument {
    static constexpr std::uint32_t drumFlag = 0x80000000;

    std::string name;
    bool isDrums = false;
    int bank = 0; // the high seven bits of a bank select, 0 to 127
    int program = 0;
    int articulation = DLSRegion::none;
    std::vector<DLSRegion> regions;
};

struct DLSFile {
    std::vector<DLSInstrument> instruments;
    std::vector<DLSWave> waves;
    std::vector<DLSArticulation> articulations;
    // What was wrong and was mended or left out: one sentence for each kind of fault.
    std::vector<std::string> warnings;
};

} // namespace volvelle
