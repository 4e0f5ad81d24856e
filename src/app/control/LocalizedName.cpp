#include "app/control/LocalizedName.h"

#include "base/PlainText.h"
#include "services/files/FileNames.h"

namespace volvelle {

std::string shownName(const std::filesystem::path& file)
{
    return plainLine(utf8Text(isMIDIFileName(file) ? file.stem().string() : file.filename().string()));
}

std::string shownPath(const std::filesystem::path& file)
{
    return plainLine(utf8Text(file.string()));
}

std::optional<std::string> localizedName(const std::filesystem::path& file)
{
    return isNameTaken(file) ? std::optional(shownName(file)) : std::nullopt;
}

} // namespace volvelle
