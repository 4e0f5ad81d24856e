#include "audio/SoundBankFinder.h"

#include "base/Paths.h"
#include "base/Text.h"

#include <system_error>

namespace volvelle {

std::optional<std::filesystem::path> soundBankInResources(std::string_view name, std::string_view extension)
{
    const auto folder = resourcesFolder();
    if (!folder) {
        return std::nullopt;
    }
    auto bank = *folder / concat(name, ".", extension);
    std::error_code error;
    if (!std::filesystem::is_regular_file(bank, error)) {
        return std::nullopt;
    }
    return bank;
}

} // namespace volvelle
