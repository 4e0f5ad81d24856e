#pragma once

#include "services/synthesizer/DLSFile.h"
#include "tests/support/TemporaryFolder.h"

#include <cstdint>
#include <filesystem>
#include <string>
#include <vector>

namespace volvelle::test {

// A piano-like instrument 0 and a drum kit over one wave, a sine of 48 frames a period: 1,000 Hz at key 84.
DLSFile tinyBank();
std::vector<std::uint8_t> tinyBankBytes();

// Where `id` first stands in the bytes; past the end where it does not.
std::size_t placeOf(const std::vector<std::uint8_t>& bytes, const std::string& id, std::size_t from = 0);
void put32(std::vector<std::uint8_t>& bytes, std::size_t at, std::uint32_t value);

} // namespace volvelle::test
