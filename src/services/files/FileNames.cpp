#include "services/files/FileNames.h"

#include "base/Text.h"

#include <algorithm>
#include <system_error>

namespace volvelle {

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
    return file.parent_path() / concat(file.stem().string(), " ", number, file.extension().string());
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

} // namespace volvelle
