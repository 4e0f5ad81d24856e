#pragma once

#include <filesystem>
#include <functional>
#include <optional>
#include <string_view>

namespace volvelle {

// Where the sound bank of that name and extension stands; no value where there is none. [main]
using SoundBankFinder =
    std::function<std::optional<std::filesystem::path>(std::string_view name, std::string_view extension)>;

} // namespace volvelle
