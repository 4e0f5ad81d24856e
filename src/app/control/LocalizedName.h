#pragma once

#include <filesystem>
#include <optional>
#include <string>

namespace volvelle {

// The name of a file as people see it: in UTF-8, without control characters, and without the ending of a MIDI
// file. [any]
std::string shownName(const std::filesystem::path& file);

// Its whole path in UTF-8, without control characters. [any]
std::string shownPath(const std::filesystem::path& file);

// The name, without a value where nothing stands there. [any]
std::optional<std::string> localizedName(const std::filesystem::path& file);

} // namespace volvelle
