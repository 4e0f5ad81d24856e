// Turns the input, read as a SoundFont, into a bank of downloadable sounds.
#include "tools/sf2dls/DLSWriter.h"
#include "tools/sf2dls/SoundFontConverter.h"

#include <cstddef>
#include <cstdint>

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size)
{
    const auto file = volvelle::SoundFontFile::read({data, size});
    if (file) {
        if (const auto bank = volvelle::SoundFontConverter(*file).convert()) {
            volvelle::writeDLS(*bank, file->name);
        }
    }
    return 0;
}
