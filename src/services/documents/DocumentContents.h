#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <vector>

namespace volvelle {

// What a document is read from and written as: bytes, or something else that only has a name.
struct DocumentContents {
    std::optional<std::vector<std::uint8_t>> bytes;
    std::string name; // of what is no bytes, such as "the folder '/home/a'"
};

} // namespace volvelle
