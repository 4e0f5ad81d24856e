#pragma once

#include "services/synthesizer/DLSFile.h"

#include <cstdint>
#include <filesystem>
#include <string>
#include <vector>

namespace volvelle::test {

// A piano-like instrument 0 and a drum kit over one wave, a sine of 48 frames a period: 1,000 Hz at key 84.
DLSFile tinyBank();
std::vector<std::uint8_t> tinyBankBytes();

// Where `id` first stands in the bytes; behind the end where it does not.
std::size_t placeOf(const std::vector<std::uint8_t>& bytes, const std::string& id, std::size_t from = 0);
void put32(std::vector<std::uint8_t>& bytes, std::size_t at, std::uint32_t value);

// A folder of its own, removed with all that is in it.
class TemporaryFolder {
public:
    TemporaryFolder();
    ~TemporaryFolder();
    TemporaryFolder(const TemporaryFolder&) = delete;
    TemporaryFolder& operator=(const TemporaryFolder&) = delete;

    // Writes a file there and gives its path.
    std::filesystem::path write(const std::string& name, const std::vector<std::uint8_t>& bytes) const;

    std::filesystem::path path;
};

} // namespace volvelle::test
