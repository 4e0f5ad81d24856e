#include "tools/sf2dls/SoundFontFile.h"

#include "services/synthesizer/RIFFChunks.h"

#include <algorithm>
#include <utility>

namespace volvelle {

namespace {

constexpr std::size_t nameSize = 20;
constexpr std::size_t presetSize = 38;
constexpr std::size_t instrumentSize = 22;
constexpr std::size_t sampleSize = 46;
constexpr std::size_t generatorSize = 4;
constexpr std::size_t modulatorSize = 10;
constexpr std::size_t bagSize = 4;

std::string textAt(std::span<const std::uint8_t> bytes, std::size_t at, std::size_t size)
{
    std::string text;
    for (std::size_t i = at; i < std::min(at + size, bytes.size()) && bytes[i] != 0; ++i) {
        text.push_back(static_cast<char>(bytes[i]));
    }
    return text;
}

template <class T>
std::span<const T> part(const std::vector<T>& table, std::size_t first, std::size_t end)
{
    const std::size_t stop = std::min(end, table.size());
    return first < stop ? std::span(table).subspan(first, stop - first) : std::span<const T>();
}

} // namespace

bool SoundFontModulator::isLike(const SoundFontModulator& other) const
{
    return source == other.source && generator == other.generator && amountSource == other.amountSource &&
           transform == other.transform;
}

Result<SoundFontFile> SoundFontFile::read(std::span<const std::uint8_t> bytes)
{
    if (unsigned32(bytes, 0) != fourCharacters("RIFF") || unsigned32(bytes, 8) != fourCharacters("sfbk")) {
        return failure("The file is no SoundFont.");
    }
    SoundFontFile file;
    RIFFChunks lists(bytes.subspan(12));
    RIFFChunk list;
    while (lists.next(list)) {
        RIFFChunks chunks(list.list == 0 ? std::span<const std::uint8_t>() : list.data);
        RIFFChunk chunk;
        while (chunks.next(chunk)) {
            file.readChunk(chunk.id, chunk.data);
        }
    }
    if (file.presets.empty() || file.instruments.empty() || file.samples.empty() || !file.hasOrder()) {
        return failure("The SoundFont is damaged or has no sounds.");
    }
    return file;
}

void SoundFontFile::readChunk(std::uint32_t id, std::span<const std::uint8_t> bytes)
{
    switch (id) {
    case fourCharacters("INAM"):
        name = textAt(bytes, 0, bytes.size());
        break;
    case fourCharacters("smpl"):
        pool = bytes;
        break;
    case fourCharacters("phdr"):
        readPresets(bytes);
        break;
    case fourCharacters("pbag"):
        presetZones = readBags(bytes);
        break;
    case fourCharacters("pmod"):
        presetTables.modulators = readModulators(bytes);
        break;
    case fourCharacters("pgen"):
        presetTables.generators = readGenerators(bytes);
        break;
    case fourCharacters("inst"):
        readInstruments(bytes);
        break;
    case fourCharacters("ibag"):
        instrumentZones = readBags(bytes);
        break;
    case fourCharacters("imod"):
        instrumentTables.modulators = readModulators(bytes);
        break;
    case fourCharacters("igen"):
        instrumentTables.generators = readGenerators(bytes);
        break;
    case fourCharacters("shdr"):
        readSamples(bytes);
        break;
    default:
        break;
    }
}

void SoundFontFile::readPresets(std::span<const std::uint8_t> bytes)
{
    presets.clear();
    // The last record only ends the one before.
    for (std::size_t at = 0; at + 2 * presetSize <= bytes.size(); at += presetSize) {
        presets.push_back({textAt(bytes, at, nameSize), unsigned16(bytes, at + 20),
                           unsigned16(bytes, at + 22), unsigned16(bytes, at + 24),
                           unsigned16(bytes, at + presetSize + 24)});
    }
}

void SoundFontFile::readInstruments(std::span<const std::uint8_t> bytes)
{
    instruments.clear();
    for (std::size_t at = 0; at + 2 * instrumentSize <= bytes.size(); at += instrumentSize) {
        instruments.push_back({unsigned16(bytes, at + 20), unsigned16(bytes, at + instrumentSize + 20)});
    }
}

void SoundFontFile::readSamples(std::span<const std::uint8_t> bytes)
{
    samples.clear();
    for (std::size_t at = 0; at + 2 * sampleSize <= bytes.size(); at += sampleSize) {
        const auto header = bytes.subspan(at, sampleSize);
        samples.push_back({textAt(header, 0, nameSize), unsigned32(header, 20), unsigned32(header, 24),
                           unsigned32(header, 28), unsigned32(header, 32), unsigned32(header, 36), header[40],
                           static_cast<std::int8_t>(header[41]), unsigned16(header, 44)});
    }
}

// Zones of one owner follow those of the one before, so that no zone is walked for two owners.
bool SoundFontFile::hasOrder() const
{
    const auto stands = [](const auto& owner, std::size_t zones) {
        return owner.firstZone <= owner.endZone && owner.endZone < zones;
    };
    return std::ranges::all_of(presets,
                               [&](const auto& owner) { return stands(owner, presetZones.size()); }) &&
           std::ranges::all_of(instruments,
                               [&](const auto& owner) { return stands(owner, instrumentZones.size()); });
}

std::vector<SoundFontFile::Bag> SoundFontFile::readBags(std::span<const std::uint8_t> bytes)
{
    std::vector<Bag> bags;
    for (std::size_t at = 0; at + bagSize <= bytes.size(); at += bagSize) {
        bags.push_back({unsigned16(bytes, at), unsigned16(bytes, at + 2)});
    }
    return bags;
}

std::vector<SoundFontGenerator> SoundFontFile::readGenerators(std::span<const std::uint8_t> bytes)
{
    std::vector<SoundFontGenerator> generators;
    for (std::size_t at = 0; at + generatorSize <= bytes.size(); at += generatorSize) {
        generators.push_back({unsigned16(bytes, at), signed16(bytes, at + 2)});
    }
    return generators;
}

std::vector<SoundFontModulator> SoundFontFile::readModulators(std::span<const std::uint8_t> bytes)
{
    std::vector<SoundFontModulator> modulators;
    for (std::size_t at = 0; at + modulatorSize <= bytes.size(); at += modulatorSize) {
        modulators.push_back({unsigned16(bytes, at), unsigned16(bytes, at + 2), signed16(bytes, at + 4),
                              unsigned16(bytes, at + 6), unsigned16(bytes, at + 8)});
    }
    return modulators;
}

SoundFontZone SoundFontFile::zone(const std::vector<Bag>& bags, std::size_t index, const Tables& tables)
{
    if (index + 1 >= bags.size()) {
        return {};
    }
    const Bag& from = bags[index];
    const Bag& to = bags[index + 1];
    return {part(tables.generators, from.generator, to.generator),
            part(tables.modulators, from.modulator, to.modulator)};
}

} // namespace volvelle
