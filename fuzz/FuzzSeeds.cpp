// Writes the sample that fuzzing of sound banks begins with into a folder: FuzzSeeds FOLDER.
#include "tests/services/synthesizer/TinyBank.h"

#include <cstdio>
#include <filesystem>
#include <fstream>

int main(int argc, char** argv)
{
    if (argc != 2) {
        std::fputs("Usage: FuzzSeeds FOLDER\n", stderr);
        return 2;
    }
    const std::filesystem::path folder = argv[1];
    const auto bytes = volvelle::test::tinyBankBytes();
    std::ofstream file(folder / "tiny.dls", std::ios::binary);
    file.write(reinterpret_cast<const char*>(bytes.data()), static_cast<std::streamsize>(bytes.size()));
    return file.flush() ? 0 : 1;
}
