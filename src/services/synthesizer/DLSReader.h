#pragma once

#include "base/Result.h"
#include "services/synthesizer/DLSFile.h"
#include "services/synthesizer/RIFFChunks.h"

#include <cstdint>
#include <map>
#include <optional>
#include <span>
#include <string>
#include <vector>

namespace volvelle {

// True where the bytes begin as a bank of downloadable sounds does.
bool isDLS(std::span<const std::uint8_t> bytes);

// Reads one bank. Every count is capped by the bytes that are there, the lists are walked once and to a fixed
// depth, and what is read takes no more than a small multiple of the file's size. [any]
class DLSReader {
public:
    static constexpr std::size_t maximumConnections = 1024; // of one articulation

    explicit DLSReader(std::span<const std::uint8_t> bytes) : file(bytes) {}

    // The bank; fails where there is nothing to play.
    Result<DLSFile> read();

private:
    void readTop(std::span<const std::uint8_t> bytes);
    void readPoolTable(std::span<const std::uint8_t> bytes);
    void readWavePool(std::span<const std::uint8_t> bytes);
    void readWave(std::span<const std::uint8_t> bytes, std::size_t position);
    void readInstruments(std::span<const std::uint8_t> bytes);
    void readInstrument(std::span<const std::uint8_t> bytes);
    void readInstrumentHeader(std::span<const std::uint8_t> bytes, DLSInstrument& instrument);
    void readRegions(std::span<const std::uint8_t> bytes, DLSInstrument& instrument);
    DLSRegion readRegion(std::span<const std::uint8_t> bytes);
    void readRegionHeader(std::span<const std::uint8_t> bytes, DLSRegion& region);
    int readArticulations(std::span<const std::uint8_t> bytes);
    void readConnections(std::span<const std::uint8_t> bytes, DLSArticulation& articulation);
    std::optional<DLSTuning> readTuning(std::span<const std::uint8_t> bytes);
    bool readFormat(std::span<const std::uint8_t> bytes, DLSWave& wave);
    void readSamples(std::span<const std::uint8_t> bytes, DLSWave& wave);
    void resolve();
    void resolveRegion(DLSRegion& region);
    void mendLoop(std::optional<DLSTuning>& tuning, std::size_t frames);
    bool next(RIFFChunks& chunks, RIFFChunk& chunk);
    void warn(const std::string& sentence);

    std::span<const std::uint8_t> file;
    DLSFile result;
    std::vector<std::uint32_t> cues;         // offsets of waves in the pool
    std::map<std::size_t, int> waveAtOffset; // offset in the pool, index of the wave
    std::uint32_t promisedInstruments = 0;
    int sampleBytes = 2;
    int channels = 1;
};

} // namespace volvelle
