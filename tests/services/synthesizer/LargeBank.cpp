#include "tests/services/synthesizer/LargeBank.h"

#include <cstdint>
#include <fstream>
#include <gtest/gtest.h>
#include <iterator>
#include <string>
#include <unistd.h>

namespace volvelle::test {

namespace {

int made = 0; // in this program

constexpr std::size_t silence = std::size_t{34} << 20U; // bytes

void add(std::string& bytes, std::size_t at, std::size_t more)
{
    std::uint32_t size = 0;
    for (int i = 3; i >= 0; --i) {
        size = size << 8U | static_cast<std::uint8_t>(bytes.at(at + static_cast<std::size_t>(i)));
    }
    size += static_cast<std::uint32_t>(more);
    for (std::size_t i = 0; i < 4; ++i) {
        bytes[at + i] = static_cast<char>(size >> (8 * i) & 0xFFU);
    }
}

std::size_t sizeAt(const std::string& bytes, std::size_t at)
{
    std::size_t size = 0;
    for (std::size_t i = 4; i-- > 0;) {
        size = size << 8U | static_cast<std::uint8_t>(bytes.at(at + i));
    }
    return size;
}

} // namespace

LargeBank::LargeBank()
    : path(std::filesystem::temp_directory_path() /
           ("volvelle-large-" + std::to_string(getpid()) + "-" + std::to_string(++made) + ".sf2"))
{
    std::ifstream source("/usr/share/sounds/sf2/TimGM6mb.sf2", std::ios::binary);
    std::string bytes{std::istreambuf_iterator<char>(source), std::istreambuf_iterator<char>()};
    const std::size_t list = bytes.find("sdtasmpl");
    EXPECT_NE(list, std::string::npos);
    const std::size_t samples = list + 4;
    const std::size_t end = samples + 8 + sizeAt(bytes, samples + 4);
    add(bytes, 4, silence);
    add(bytes, list - 4, silence);
    add(bytes, samples + 4, silence);
    bytes.insert(end, silence, '\0');
    std::ofstream(path, std::ios::binary) << bytes;
}

LargeBank::~LargeBank()
{
    std::error_code code;
    std::filesystem::remove(path, code);
}

} // namespace volvelle::test
