#pragma once

#include "base/Result.h"

#include <cstdint>
#include <optional>
#include <span>
#include <string>
#include <vector>

namespace volvelle {

struct SoundFontPreset {
    std::string name;
    int program = 0;
    int bank = 0;
    std::size_t firstZone = 0;
    std::size_t endZone = 0;
};

struct SoundFontInstrument {
    std::size_t firstZone = 0;
    std::size_t endZone = 0;
};

struct SoundFontGenerator {
    std::uint16_t number = 0;
    std::int16_t amount = 0;
};

struct SoundFontModulator {
    std::uint16_t source = 0;
    std::uint16_t generator = 0;
    std::int16_t amount = 0;
    std::uint16_t amountSource = 0;
    std::uint16_t transform = 0;

    // The same but for the amount: the later one replaces the earlier.
    bool isLike(const SoundFontModulator& other) const;
};

struct SoundFontZone {
    std::span<const SoundFontGenerator> generators;
    std::span<const SoundFontModulator> modulators;
};

struct SoundFontSample {
    std::string name;
    std::uint32_t start = 0; // frames in the pool
    std::uint32_t end = 0;   // past the last
    std::uint32_t loopStart = 0;
    std::uint32_t loopEnd = 0;
    std::uint32_t sampleRate = 0; // Hz
    std::uint8_t key = 60;
    std::int8_t correction = 0; // cents
    std::uint16_t type = 0;
};

// A SoundFont 2 file as its tables. Points into the bytes it was read from; every index stands inside its
// table.
class SoundFontFile {
public:
    // Fails where the bytes are no SoundFont.
    static Result<SoundFontFile> read(std::span<const std::uint8_t> bytes);

    // The generators and modulators of a zone.
    SoundFontZone presetZone(std::size_t index) const { return zone(presetZones, index, presetTables); }

    SoundFontZone instrumentZone(std::size_t index) const
    {
        return zone(instrumentZones, index, instrumentTables);
    }

    std::string name;
    std::vector<SoundFontPreset> presets;
    std::vector<SoundFontInstrument> instruments;
    std::vector<SoundFontSample> samples;
    std::span<const std::uint8_t> pool; // 16-bit frames

private:
    struct Bag {
        std::uint16_t generator = 0;
        std::uint16_t modulator = 0;
    };

    struct Tables {
        std::vector<SoundFontGenerator> generators;
        std::vector<SoundFontModulator> modulators;
    };

    void readChunk(std::uint32_t id, std::span<const std::uint8_t> bytes);
    void readPresets(std::span<const std::uint8_t> bytes);
    void readInstruments(std::span<const std::uint8_t> bytes);
    void readSamples(std::span<const std::uint8_t> bytes);
    bool hasOrder() const;
    static std::vector<Bag> readBags(std::span<const std::uint8_t> bytes);
    static std::vector<SoundFontGenerator> readGenerators(std::span<const std::uint8_t> bytes);
    static std::vector<SoundFontModulator> readModulators(std::span<const std::uint8_t> bytes);
    static SoundFontZone zone(const std::vector<Bag>& bags, std::size_t index, const Tables& tables);

    std::vector<Bag> presetZones;
    std::vector<Bag> instrumentZones;
    Tables presetTables;
    Tables instrumentTables;
};

} // namespace volvelle
