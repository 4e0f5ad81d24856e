#pragma once

#include <cstdint>
#include <string>
#include <string_view>
#include <vector>

namespace volvelle::test {

using Bytes = std::vector<std::uint8_t>;
using Lines = std::vector<std::string>;

// "4D 54" as two bytes; white space is free, and text between quotation marks stands for its characters.
Bytes hex(std::string_view digits);

} // namespace volvelle::test
