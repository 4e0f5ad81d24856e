#include "services/files/FileNames.h"

#include "base/PlainText.h"
#include "base/Text.h"

#include <algorithm>
#include <climits>
#include <system_error>

namespace volvelle {

namespace {

// The first bytes of a text, without the half of a letter at their end.
std::string wholeLetters(const std::string& name, std::size_t bytes)
{
    const auto isInside = [&](std::size_t at) {
        return (static_cast<unsigned char>(name[at]) & 0xC0U) == 0x80U;
    };
    while (bytes > 0 && utf8Length(name) == name.size() && isInside(bytes)) {
        --bytes;
    }
    return name.substr(0, bytes);
}

} // namespace

std::filesystem::path folderOf(const std::filesystem::path& file)
{
    return file.has_parent_path() ? file.parent_path() : ".";
}

std::string fileEnding(const std::filesystem::path& file)
{
    std::string ending = file.extension().string();
    std::ranges::transform(ending, ending.begin(), [](char letter) {
        return letter >= 'A' && letter <= 'Z' ? static_cast<char>(letter - 'A' + 'a') : letter;
    });
    return ending;
}

bool isMIDIFileName(const std::filesystem::path& file)
{
    const std::string ending = fileEnding(file);
    return ending == ".mid" || ending == ".midi";
}

std::filesystem::path withNumber(const std::filesystem::path& file, int number)
{
    std::string name = file.stem().string();
    const std::string ending = concat(" ", number, file.extension().string());
    const bool isLong = name.size() + ending.size() > NAME_MAX;
    if (isLong && file.filename().native().size() <= NAME_MAX && ending.size() < NAME_MAX) {
        name = wholeLetters(name, NAME_MAX - ending.size());
    }
    return file.parent_path() / (name + ending);
}

std::filesystem::path numberedFile(const std::filesystem::path& file, int number)
{
    return number <= 1 ? file : withNumber(file, number);
}

bool isNameTaken(const std::filesystem::path& file)
{
    std::error_code error;
    return std::filesystem::exists(std::filesystem::symlink_status(file, error));
}

bool isStream(const std::filesystem::path& path)
{
    std::error_code unknown;
    const auto status = std::filesystem::status(path, unknown);
    const bool isThere = std::filesystem::exists(status) && !std::filesystem::is_directory(status);
    const bool isOpened = path.parent_path() == "/dev" || path.parent_path() == "/dev/fd";
    return isThere && (isOpened || !std::filesystem::is_regular_file(status));
}

} // namespace volvelle
