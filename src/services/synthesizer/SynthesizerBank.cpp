#include "services/synthesizer/SynthesizerBank.h"

#include "base/Console.h"
#include "services/synthesizer/DLSReader.h"

#include <array>
#include <fstream>
#include <span>
#include <utility>
#include <vector>

namespace volvelle {

namespace {

constexpr std::uintmax_t greatestSize = std::uintmax_t{2} << 30U; // bytes

std::string sentence(const std::filesystem::path& path, const std::string& rest)
{
    return "The sound bank \"" + path.string() + "\" " + rest;
}

bool readBytes(std::ifstream& stream, std::span<std::uint8_t> bytes)
{
    stream.read(reinterpret_cast<char*>(bytes.data()), static_cast<std::streamsize>(bytes.size()));
    return static_cast<std::size_t>(stream.gcount()) == bytes.size();
}

// True where the lists of a SoundFont stand in the file with all their bytes: what is cut off would be
// offered to further loaders of the library behind.
bool isWholeSoundFont(std::ifstream& stream, std::uintmax_t size)
{
    bool hasSamples = false;
    bool hasSounds = false;
    std::array<std::uint8_t, 12> head{};
    for (std::uintmax_t at = head.size(); at + head.size() <= size;) {
        stream.seekg(static_cast<std::streamoff>(at));
        if (!readBytes(stream, head)) {
            return false;
        }
        const std::uintmax_t bytes = unsigned32(head, 4);
        const bool isList = unsigned32(head, 0) == fourCharacters("LIST");
        if (bytes > size - at - RIFFChunks::headerSize) {
            return false;
        }
        hasSamples = hasSamples || (isList && unsigned32(head, 8) == fourCharacters("sdta"));
        hasSounds = hasSounds || (isList && unsigned32(head, 8) == fourCharacters("pdta"));
        at += RIFFChunks::headerSize + bytes + (bytes & 1U);
    }
    return hasSamples && hasSounds;
}

} // namespace

Result<> SynthesizerBank::open(const BankFile& file)
{
    const std::filesystem::path& path = file.path;
    const std::uintmax_t size = file.size;
    std::ifstream stream(file.readable, std::ios::binary);
    if (!stream) {
        return failure(sentence(path, "cannot be read."));
    }
    std::array<std::uint8_t, 12> head{};
    const bool hasHead = readBytes(stream, head) && unsigned32(head, 0) == fourCharacters("RIFF");
    if (hasHead && unsigned32(head, 8) == fourCharacters("sfbk")) {
        return isWholeSoundFont(stream, size) ? Result<>() : failure(sentence(path, "is damaged."));
    }
    if (!hasHead || !isDLS(head) || size > greatestSize) {
        return failure(sentence(path, "is neither a SoundFont nor a bank of downloadable sounds."));
    }
    std::vector<std::uint8_t> bytes(size);
    stream.seekg(0);
    Result<DLSFile> read = readBytes(stream, bytes) ? DLSReader(bytes).read() : failure("");
    if (!read) {
        const std::string line = sentence(path, "cannot be used. " + read.error());
        debugprint(line);
        return failure(line);
    }
    sounds = *std::move(read);
    for (const std::string& warning : sounds->warnings) {
        debugprint(sentence(path, "has a fault: " + warning));
    }
    return {};
}

FluidPointer<fluid_settings_t> makeSettings(const SynthesizerOptions& options, bool isLarge)
{
    FluidPointer<fluid_settings_t> settings(new_fluid_settings());
    if (settings) {
        fluid_settings_t* s = settings.get();
        fluid_settings_setint(s, "synth.threadsafe-api", 0);
        fluid_settings_setint(s, "synth.lock-memory", 0);
        fluid_settings_setint(s, "synth.polyphony", options.polyphony);
        fluid_settings_setint(s, "synth.dynamic-sample-loading", isLarge ? 1 : 0);
        fluid_settings_setint(s, "synth.cpu-cores", 1);
        fluid_settings_setint(s, "synth.reverb.active", options.reverb ? 1 : 0);
        fluid_settings_setint(s, "synth.chorus.active", options.chorus ? 1 : 0);
        fluid_settings_setnum(s, "synth.sample-rate", options.sampleRate);
        fluid_settings_setnum(s, "synth.gain", options.gain);
    }
    return settings;
}

} // namespace volvelle
