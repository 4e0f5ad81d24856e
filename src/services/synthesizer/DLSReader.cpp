#include "services/synthesizer/DLSReader.h"

#include <algorithm>
#include <utility>

namespace volvelle {

namespace {

constexpr std::uint32_t lowestRate = 400;     // Hz
constexpr std::uint32_t highestRate = 192000; // Hz
constexpr std::size_t maximumWarnings = 64;
constexpr std::uint32_t releaseLoop = 1;

std::string nameIn(std::span<const std::uint8_t> bytes)
{
    RIFFChunks chunks(bytes);
    RIFFChunk chunk;
    while (chunks.next(chunk)) {
        if (chunk.id == fourCharacters("INAM")) {
            const std::size_t size = std::min<std::size_t>(chunk.data.size(), 64);
            std::string name(chunk.data.begin(), chunk.data.begin() + static_cast<std::ptrdiff_t>(size));
            return name.substr(0, name.find('\0'));
        }
    }
    return {};
}

} // namespace

bool isDLS(std::span<const std::uint8_t> bytes)
{
    return unsigned32(bytes, 0) == fourCharacters("RIFF") && unsigned32(bytes, 8) == fourCharacters("DLS ");
}

Result<DLSFile> DLSReader::read()
{
    if (!isDLS(file)) {
        return failure("The file is no bank of downloadable sounds.");
    }
    RIFFChunks chunks(file);
    RIFFChunk top;
    next(chunks, top);
    readTop(top.data);
    resolve();
    const bool isPlayable = std::ranges::any_of(
        result.instruments, [](const DLSInstrument& instrument) { return !instrument.regions.empty(); });
    if (!isPlayable) {
        const std::string reason = result.warnings.empty() ? "" : " " + result.warnings.front();
        return failure("The bank holds no instrument with a sound." + reason);
    }
    return std::move(result);
}

void DLSReader::readTop(std::span<const std::uint8_t> bytes)
{
    RIFFChunks chunks(bytes);
    RIFFChunk chunk;
    while (next(chunks, chunk)) {
        if (chunk.id == fourCharacters("colh")) {
            promisedInstruments = unsigned32(chunk.data, 0);
        } else if (chunk.id == fourCharacters("ptbl")) {
            readPoolTable(chunk.data);
        } else if (chunk.list == fourCharacters("lins")) {
            readInstruments(chunk.data);
        } else if (chunk.list == fourCharacters("wvpl")) {
            readWavePool(chunk.data);
        }
    }
    if (promisedInstruments != result.instruments.size()) {
        warn("The header counts another number of instruments than there are.");
    }
}

void DLSReader::readPoolTable(std::span<const std::uint8_t> bytes)
{
    const std::size_t start = unsigned32(bytes, 0);
    const std::size_t promised = unsigned32(bytes, 4);
    if (start < 8 || start > bytes.size()) {
        warn("The table of waves has a wrong size.");
        return;
    }
    const std::size_t count = std::min(promised, (bytes.size() - start) / 4);
    if (count != promised) {
        warn("The table of waves counts more entries than there are.");
    }
    cues.clear();
    for (std::size_t i = 0; i < count; ++i) {
        cues.push_back(unsigned32(bytes, start + 4 * i));
    }
}

void DLSReader::readWavePool(std::span<const std::uint8_t> bytes)
{
    if (!waveAtOffset.empty()) {
        warn("The file has more than one pool of waves.");
        return;
    }
    RIFFChunks chunks(bytes);
    RIFFChunk chunk;
    while (next(chunks, chunk)) {
        if (chunk.list == fourCharacters("wave")) {
            readWave(chunk.data, chunk.position);
        }
    }
}

void DLSReader::readWave(std::span<const std::uint8_t> bytes, std::size_t position)
{
    DLSWave wave;
    std::span<const std::uint8_t> samples;
    bool isReadable = false;
    RIFFChunks chunks(bytes);
    RIFFChunk chunk;
    while (next(chunks, chunk)) {
        if (chunk.id == fourCharacters("fmt ")) {
            isReadable = readFormat(chunk.data, wave);
        } else if (chunk.id == fourCharacters("data")) {
            samples = chunk.data;
        } else if (chunk.id == fourCharacters("wsmp")) {
            wave.tuning = readTuning(chunk.data);
        }
    }
    if (isReadable) {
        readSamples(samples, wave);
    }
    mendLoop(wave.tuning, wave.samples.size());
    waveAtOffset[position] = static_cast<int>(result.waves.size());
    result.waves.push_back(std::move(wave));
}

bool DLSReader::readFormat(std::span<const std::uint8_t> bytes, DLSWave& wave)
{
    constexpr int pulseCode = 1;
    channels = unsigned16(bytes, 2);
    wave.sampleRate = unsigned32(bytes, 4);
    sampleBytes = unsigned16(bytes, 14) / 8;
    const bool isRateUsable = wave.sampleRate >= lowestRate && wave.sampleRate <= highestRate;
    const bool isKnown = unsigned16(bytes, 0) == pulseCode && (sampleBytes == 1 || sampleBytes == 2);
    if (!isKnown || !isRateUsable || channels < 1 || channels > 2) {
        warn("A wave has a format that cannot be played.");
        return false;
    }
    return true;
}

void DLSReader::readSamples(std::span<const std::uint8_t> bytes, DLSWave& wave)
{
    const auto step = static_cast<std::size_t>(sampleBytes) * static_cast<std::size_t>(channels);
    wave.samples.resize(bytes.size() / step);
    for (std::size_t i = 0; i < wave.samples.size(); ++i) {
        wave.samples[i] = sampleBytes == 2 ? signed16(bytes, i * step)
                                           : static_cast<std::int16_t>((bytes[i * step] - 128) * 256);
    }
}

void DLSReader::readInstruments(std::span<const std::uint8_t> bytes)
{
    RIFFChunks chunks(bytes);
    RIFFChunk chunk;
    while (next(chunks, chunk)) {
        if (chunk.list == fourCharacters("ins ")) {
            readInstrument(chunk.data);
        }
    }
}

void DLSReader::readInstrument(std::span<const std::uint8_t> bytes)
{
    DLSInstrument instrument;
    std::uint32_t promised = 0;
    RIFFChunks chunks(bytes);
    RIFFChunk chunk;
    while (next(chunks, chunk)) {
        if (chunk.id == fourCharacters("insh")) {
            promised = unsigned32(chunk.data, 0);
            readInstrumentHeader(chunk.data, instrument);
        } else if (chunk.list == fourCharacters("lrgn")) {
            readRegions(chunk.data, instrument);
        } else if (chunk.list == fourCharacters("lart") || chunk.list == fourCharacters("lar2")) {
            instrument.articulation = readArticulations(chunk.data);
        } else if (chunk.list == fourCharacters("INFO")) {
            instrument.name = nameIn(chunk.data);
        }
    }
    if (promised != instrument.regions.size()) {
        warn("An instrument counts another number of regions than it has.");
    }
    result.instruments.push_back(std::move(instrument));
}

void DLSReader::readInstrumentHeader(std::span<const std::uint8_t> bytes, DLSInstrument& instrument)
{
    const std::uint32_t bank = unsigned32(bytes, 4);
    const std::uint32_t program = unsigned32(bytes, 8);
    instrument.isDrums = (bank & DLSInstrument::drumFlag) != 0;
    instrument.bank = static_cast<int>((bank >> 8U) & 0x7FU);
    instrument.program = static_cast<int>(program & 0x7FU);
    if (program > 0x7F) {
        warn("An instrument has a program number above 127.");
    }
}

void DLSReader::readRegions(std::span<const std::uint8_t> bytes, DLSInstrument& instrument)
{
    RIFFChunks chunks(bytes);
    RIFFChunk chunk;
    while (next(chunks, chunk)) {
        if (chunk.list == fourCharacters("rgn ") || chunk.list == fourCharacters("rgn2")) {
            instrument.regions.push_back(readRegion(chunk.data));
        }
    }
}

DLSRegion DLSReader::readRegion(std::span<const std::uint8_t> bytes)
{
    DLSRegion region;
    RIFFChunks chunks(bytes);
    RIFFChunk chunk;
    while (next(chunks, chunk)) {
        if (chunk.id == fourCharacters("rgnh")) {
            readRegionHeader(chunk.data, region);
        } else if (chunk.id == fourCharacters("wsmp")) {
            region.tuning = readTuning(chunk.data);
        } else if (chunk.id == fourCharacters("wlnk") && chunk.data.size() >= 12) {
            region.wave = static_cast<int>(std::min<std::uint32_t>(unsigned32(chunk.data, 8), 0x7FFFFFFF));
        } else if (chunk.list == fourCharacters("lart") || chunk.list == fourCharacters("lar2")) {
            region.articulation = readArticulations(chunk.data);
        }
    }
    return region;
}

void DLSReader::readRegionHeader(std::span<const std::uint8_t> bytes, DLSRegion& region)
{
    if (bytes.size() < 12) {
        warn("A region's header is too short.");
        return;
    }
    region.lowKey = unsigned16(bytes, 0);
    region.highKey = unsigned16(bytes, 2);
    region.lowVelocity = unsigned16(bytes, 4);
    region.highVelocity = unsigned16(bytes, 6);
    region.keyGroup = unsigned16(bytes, 10);
}

int DLSReader::readArticulations(std::span<const std::uint8_t> bytes)
{
    DLSArticulation articulation;
    RIFFChunks chunks(bytes);
    RIFFChunk chunk;
    while (next(chunks, chunk)) {
        if (chunk.id == fourCharacters("art1") || chunk.id == fourCharacters("art2")) {
            readConnections(chunk.data, articulation);
        }
    }
    result.articulations.push_back(std::move(articulation));
    return static_cast<int>(result.articulations.size()) - 1;
}

void DLSReader::readConnections(std::span<const std::uint8_t> bytes, DLSArticulation& articulation)
{
    const std::size_t start = unsigned32(bytes, 0);
    const std::size_t promised = unsigned32(bytes, 4);
    if (start < 8 || start > bytes.size()) {
        warn("An articulation has a wrong size.");
        return;
    }
    const std::size_t there = std::min(promised, (bytes.size() - start) / DLSConnection::size);
    if (there != promised) {
        warn("An articulation counts more connections than there are.");
    }
    const std::size_t room = maximumConnections - articulation.size();
    if (there > room) {
        warn("An articulation has too many connections.");
    }
    for (std::size_t i = 0; i < std::min(there, room); ++i) {
        const std::size_t at = start + i * DLSConnection::size;
        articulation.push_back({unsigned16(bytes, at), unsigned16(bytes, at + 2), unsigned16(bytes, at + 4),
                                unsigned16(bytes, at + 6), signed32(bytes, at + 8)});
    }
}

std::optional<DLSTuning> DLSReader::readTuning(std::span<const std::uint8_t> bytes)
{
    const std::size_t start = unsigned32(bytes, 0);
    if (start < 20 || start > bytes.size()) {
        warn("A tuning has a wrong size.");
        return std::nullopt;
    }
    DLSTuning tuning{unsigned16(bytes, 4), signed16(bytes, 6), signed32(bytes, 8), std::nullopt};
    if (tuning.unityNote > 127) {
        warn("A tuning has a key above 127.");
        tuning.unityNote = 60;
    }
    const std::size_t promised = unsigned32(bytes, 16);
    if (promised > (bytes.size() - start) / 16) {
        warn("A tuning counts more loops than there are.");
    }
    if (promised > 0 && bytes.size() - start >= 16) {
        tuning.loop = DLSLoop{unsigned32(bytes, start + 4) == releaseLoop, unsigned32(bytes, start + 8),
                              unsigned32(bytes, start + 12)};
    }
    return tuning;
}

void DLSReader::resolve()
{
    for (DLSInstrument& instrument : result.instruments) {
        for (DLSRegion& region : instrument.regions) {
            resolveRegion(region);
            if (region.articulation == DLSRegion::none) {
                region.articulation = instrument.articulation;
            }
        }
        std::erase_if(instrument.regions,
                      [](const DLSRegion& region) { return region.wave == DLSRegion::none; });
    }
}

void DLSReader::resolveRegion(DLSRegion& region)
{
    const auto index = static_cast<std::size_t>(region.wave);
    const bool isListed = region.wave >= 0 && index < cues.size();
    const auto found = isListed ? waveAtOffset.find(cues[index]) : waveAtOffset.end();
    region.wave = found == waveAtOffset.end() ? DLSRegion::none : found->second;
    if (region.wave == DLSRegion::none) {
        warn("A region names a wave that is not there.");
        return;
    }
    const std::size_t frames = result.waves[static_cast<std::size_t>(region.wave)].samples.size();
    if (frames < 8) {
        warn("A region names a wave without samples.");
        region.wave = DLSRegion::none;
        return;
    }
    mendLoop(region.tuning, frames);
}

void DLSReader::mendLoop(std::optional<DLSTuning>& tuning, std::size_t frames)
{
    if (!tuning || !tuning->loop) {
        return;
    }
    DLSLoop& loop = *tuning->loop;
    if (loop.start >= frames) {
        warn("A loop lies outside its wave.");
        tuning->loop.reset();
    } else if (loop.length > frames - loop.start) {
        warn("A loop lies outside its wave.");
        loop.length = static_cast<std::uint32_t>(frames - loop.start);
    }
}

bool DLSReader::next(RIFFChunks& chunks, RIFFChunk& chunk)
{
    const bool isThere = chunks.next(chunk);
    if (isThere && chunk.isCut) {
        warn("A chunk promises more bytes than there are.");
    }
    return isThere;
}

void DLSReader::warn(const std::string& sentence)
{
    if (result.warnings.size() < maximumWarnings &&
        std::ranges::find(result.warnings, sentence) == result.warnings.end()) {
        result.warnings.push_back(sentence);
    }
}

} // namespace volvelle
