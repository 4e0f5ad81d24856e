#include "tools/sf2dls/DLSWriter.h"

#include "services/synthesizer/RIFFChunks.h"

#include <cstddef>

namespace volvelle {

namespace {

constexpr std::uint32_t frameBytes = 2;

class Writer {
public:
    void put16(std::uint32_t value);
    void put32(std::uint32_t value);
    std::size_t open(std::uint32_t id);
    std::size_t openList(std::uint32_t kind);
    void close(std::size_t start);
    void patch32(std::size_t at, std::uint32_t value);
    void writeName(const std::string& name);
    void writeTuning(const DLSTuning& tuning);
    void writeArticulation(const DLSArticulation& articulation);
    void writeRegion(const DLSFile& file, const DLSRegion& region);
    void writeInstrument(const DLSFile& file, const DLSInstrument& instrument);
    void writeWave(const DLSWave& wave);

    std::vector<std::uint8_t> bytes;
};

std::uint32_t count(std::size_t size)
{
    return static_cast<std::uint32_t>(size);
}

void Writer::put16(std::uint32_t value)
{
    bytes.push_back(static_cast<std::uint8_t>(value));
    bytes.push_back(static_cast<std::uint8_t>(value >> 8U));
}

void Writer::put32(std::uint32_t value)
{
    put16(value & 0xFFFFU);
    put16(value >> 16U);
}

std::size_t Writer::open(std::uint32_t id)
{
    put32(id);
    put32(0);
    return bytes.size();
}

std::size_t Writer::openList(std::uint32_t kind)
{
    const std::size_t start = open(fourCharacters("LIST"));
    put32(kind);
    return start;
}

void Writer::close(std::size_t start)
{
    patch32(start - 4, count(bytes.size() - start));
    if (bytes.size() % 2 != 0) {
        bytes.push_back(0);
    }
}

void Writer::patch32(std::size_t at, std::uint32_t value)
{
    for (unsigned i = 0; i < 4; ++i) {
        bytes[at + i] = static_cast<std::uint8_t>(value >> (8U * i));
    }
}

void Writer::writeName(const std::string& name)
{
    const std::size_t list = openList(fourCharacters("INFO"));
    const std::size_t chunk = open(fourCharacters("INAM"));
    bytes.insert(bytes.end(), name.begin(), name.end());
    bytes.push_back(0);
    close(chunk);
    close(list);
}

void Writer::writeTuning(const DLSTuning& tuning)
{
    const std::size_t chunk = open(fourCharacters("wsmp"));
    put32(20);
    put16(tuning.unityNote);
    put16(static_cast<std::uint16_t>(tuning.fineTune));
    put32(static_cast<std::uint32_t>(tuning.gain));
    put32(0);
    put32(tuning.loop ? 1 : 0);
    if (tuning.loop) {
        put32(16);
        put32(tuning.loop->endsOnRelease ? 1 : 0);
        put32(tuning.loop->start);
        put32(tuning.loop->length);
    }
    close(chunk);
}

void Writer::writeArticulation(const DLSArticulation& articulation)
{
    const std::size_t list = openList(fourCharacters("lar2"));
    const std::size_t chunk = open(fourCharacters("art2"));
    put32(8);
    put32(count(articulation.size()));
    for (const DLSConnection& connection : articulation) {
        put16(connection.source);
        put16(connection.control);
        put16(connection.destination);
        put16(connection.transform);
        put32(static_cast<std::uint32_t>(connection.scale));
    }
    close(chunk);
    close(list);
}

void Writer::writeRegion(const DLSFile& file, const DLSRegion& region)
{
    constexpr std::uint32_t mayRepeat = 1; // a key struck again leaves the sound before it to its release
    constexpr std::uint32_t leftChannel = 1;
    const std::size_t list = openList(fourCharacters("rgn2"));
    const std::size_t header = open(fourCharacters("rgnh"));
    for (const std::uint32_t value :
         {std::uint32_t{region.lowKey}, std::uint32_t{region.highKey}, std::uint32_t{region.lowVelocity},
          std::uint32_t{region.highVelocity}, mayRepeat, std::uint32_t{region.keyGroup}, std::uint32_t{0}}) {
        put16(value);
    }
    close(header);
    if (region.tuning) {
        writeTuning(*region.tuning);
    }
    const std::size_t link = open(fourCharacters("wlnk"));
    put16(0);
    put16(0);
    put32(leftChannel);
    put32(static_cast<std::uint32_t>(region.wave));
    close(link);
    if (region.articulation != DLSRegion::none) {
        writeArticulation(file.articulations[static_cast<std::size_t>(region.articulation)]);
    }
    close(list);
}

void Writer::writeInstrument(const DLSFile& file, const DLSInstrument& instrument)
{
    const std::size_t list = openList(fourCharacters("ins "));
    const std::size_t header = open(fourCharacters("insh"));
    put32(count(instrument.regions.size()));
    put32((instrument.isDrums ? DLSInstrument::drumFlag : 0U) |
          (static_cast<std::uint32_t>(instrument.bank) << 8U));
    put32(static_cast<std::uint32_t>(instrument.program));
    close(header);
    const std::size_t regions = openList(fourCharacters("lrgn"));
    for (const DLSRegion& region : instrument.regions) {
        writeRegion(file, region);
    }
    close(regions);
    if (instrument.articulation != DLSRegion::none) {
        writeArticulation(file.articulations[static_cast<std::size_t>(instrument.articulation)]);
    }
    writeName(instrument.name);
    close(list);
}

void Writer::writeWave(const DLSWave& wave)
{
    const std::size_t list = openList(fourCharacters("wave"));
    const std::size_t format = open(fourCharacters("fmt "));
    put16(1);
    put16(1);
    put32(wave.sampleRate);
    put32(wave.sampleRate * frameBytes);
    put16(frameBytes);
    put16(8 * frameBytes);
    close(format);
    if (wave.tuning) {
        writeTuning(*wave.tuning);
    }
    const std::size_t data = open(fourCharacters("data"));
    for (const std::int16_t sample : wave.samples) {
        put16(static_cast<std::uint16_t>(sample));
    }
    close(data);
    close(list);
}

} // namespace

std::vector<std::uint8_t> writeDLS(const DLSFile& file, const std::string& name)
{
    Writer writer;
    const std::size_t riff = writer.open(fourCharacters("RIFF"));
    writer.put32(fourCharacters("DLS "));
    const std::size_t header = writer.open(fourCharacters("colh"));
    writer.put32(count(file.instruments.size()));
    writer.close(header);
    const std::size_t instruments = writer.openList(fourCharacters("lins"));
    for (const DLSInstrument& instrument : file.instruments) {
        writer.writeInstrument(file, instrument);
    }
    writer.close(instruments);
    const std::size_t table = writer.open(fourCharacters("ptbl"));
    writer.put32(8);
    writer.put32(count(file.waves.size()));
    const std::size_t cues = writer.bytes.size();
    writer.bytes.resize(cues + 4 * file.waves.size());
    writer.close(table);
    const std::size_t pool = writer.openList(fourCharacters("wvpl"));
    for (std::size_t i = 0; i < file.waves.size(); ++i) {
        writer.patch32(cues + 4 * i, count(writer.bytes.size() - pool - 4));
        writer.writeWave(file.waves[i]);
    }
    writer.close(pool);
    writer.writeName(name);
    writer.close(riff);
    return std::move(writer.bytes);
}

} // namespace volvelle
