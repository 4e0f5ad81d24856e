#pragma once

#include "services/synthesizer/DLSFile.h"

#include <cstdint>
#include <string>
#include <vector>

namespace volvelle {

// The bytes of a bank, level 2. Regions name waves and articulations that are there, or none.
std::vector<std::uint8_t> writeDLS(const DLSFile& file, const std::string& name);

} // namespace volvelle
