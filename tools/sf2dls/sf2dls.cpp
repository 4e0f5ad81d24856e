#include "tools/sf2dls/DLSWriter.h"
#include "tools/sf2dls/SoundFontConverter.h"

#include <cstdio>
#include <filesystem>
#include <fstream>
#include <iterator>
#include <span>
#include <string>
#include <system_error>

namespace {

int fail(const std::string& sentence)
{
    std::fprintf(stderr, "sf2dls: %s\n", sentence.c_str());
    return 1;
}

// Under another name first, so that a half-written bank never stands under the right one.
bool writeFile(const std::filesystem::path& path, const std::vector<std::uint8_t>& bytes)
{
    std::filesystem::path part = path;
    part += ".part";
    std::ofstream stream(part, std::ios::binary);
    stream.write(reinterpret_cast<const char*>(bytes.data()), static_cast<std::streamsize>(bytes.size()));
    stream.close();
    std::error_code code;
    if (stream) {
        std::filesystem::rename(part, path, code);
    }
    if (!stream || code) {
        std::error_code ignored;
        std::filesystem::remove(part, ignored);
        return false;
    }
    return true;
}

int convert(const std::string& from, const std::string& to)
{
    std::ifstream stream(from, std::ios::binary);
    if (!stream) {
        return fail("\"" + from + "\" cannot be read.");
    }
    const std::vector<char> text{std::istreambuf_iterator<char>(stream), {}};
    const std::vector<std::uint8_t> bytes(text.begin(), text.end());
    const auto source = volvelle::SoundFontFile::read(bytes);
    if (!source) {
        return fail(source.error());
    }
    volvelle::SoundFontConverter converter(*source);
    const auto bank = converter.convert();
    if (!bank) {
        return fail(bank.error());
    }
    if (!writeFile(to, volvelle::writeDLS(*bank, source->name))) {
        return fail("\"" + to + "\" cannot be written.");
    }
    std::printf("%zu instruments, %zu waves, %d voices and %d modulators left out\n",
                bank->instruments.size(), bank->waves.size(), converter.droppedVoices,
                converter.droppedModulators);
    return 0;
}

} // namespace

int main(int argc, char** argv)
{
    const std::span arguments(argv, static_cast<std::size_t>(argc));
    if (arguments.size() != 3) {
        std::fprintf(stderr, "usage: sf2dls IN.sf2 OUT.dls\n");
        return 2;
    }
    return convert(arguments[1], arguments[2]);
}
