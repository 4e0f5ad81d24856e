#include "services/synthesizer/SoundBanks.h"

#include "base/Console.h"
#include "base/Paths.h"

#include <nlohmann/json.hpp>

#include <algorithm>
#include <cstdlib>
#include <fstream>
#include <system_error>
#include <utility>

namespace volvelle {

namespace {

using std::filesystem::path;

bool isFile(const path& candidate)
{
    std::error_code code;
    return std::filesystem::is_regular_file(candidate, code);
}

std::optional<path> folderOf(const char* variable)
{
    const char* value = std::getenv(variable); // NOLINT(concurrency-mt-unsafe)
    return value == nullptr || *value != '/' ? std::nullopt : std::optional<path>(value);
}

// What the banks among the resources give, folder by folder, else what the SoundFonts give.
template <class Search>
std::optional<path> firstIn(Search search)
{
    const auto folders = resourcesFolders();
    for (const path& folder : folders) {
        if (const auto bank = search(SoundBanks(folder, {}))) {
            return bank;
        }
    }
    for (const path& folder : folders) {
        if (const auto bank = search(SoundBanks(folder, soundFontFolders()))) {
            return bank;
        }
    }
    return search(SoundBanks(std::nullopt, soundFontFolders()));
}

} // namespace

std::vector<path> soundFontFolders()
{
    std::vector<path> folders;
    if (const auto data = folderOf("XDG_DATA_HOME")) {
        folders.push_back(*data / "soundfonts");
    }
    if (const auto home = folderOf("HOME")) {
        folders.push_back(*home / ".local/share/soundfonts");
    }
    folders.insert(folders.end(),
                   {"/usr/share/sounds/sf2", "/usr/share/sounds/sf3", "/usr/share/soundfonts"});
    std::erase_if(folders, [](const path& folder) {
        std::error_code code;
        return !std::filesystem::is_directory(folder, code);
    });
    return folders;
}

SoundBanks::SoundBanks(std::optional<path> resourcesFolder, std::vector<path> soundFonts)
    : resources(std::move(resourcesFolder)), soundFonts(std::move(soundFonts))
{
}

std::optional<path> SoundBanks::find(std::string_view name, std::string_view extension) const
{
    const std::string file = std::string(name) + "." + std::string(extension);
    if (path(file).has_parent_path()) {
        return std::nullopt;
    }
    if (resources && isFile(*resources / file)) {
        return *resources / file;
    }
    return installed(file);
}

std::optional<path> SoundBanks::best() const
{
    const path own = "gs_instruments.dls";
    if (resources && isFile(*resources / own)) {
        return *resources / own;
    }
    const auto found = installed("best");
    return found ? found : largestInstalled();
}

std::vector<std::string> SoundBanks::candidates(const std::string& key) const
{
    std::vector<std::string> names;
    if (!resources || !isFile(*resources / "banks.json")) {
        return names;
    }
    std::ifstream stream(*resources / "banks.json");
    const auto map = nlohmann::json::parse(stream, nullptr, false);
    if (!map.is_object()) {
        debugprint("The map of sound banks \"" + (*resources / "banks.json").string() + "\" cannot be read.");
        return names;
    }
    const auto list = map.find(key);
    if (list == map.end() || !list->is_array()) {
        return names;
    }
    for (const auto& entry : *list) {
        if (entry.is_string() && !path(entry.get<std::string>()).has_parent_path()) {
            names.push_back(entry.get<std::string>());
        }
    }
    return names;
}

std::optional<path> SoundBanks::installed(const std::string& key) const
{
    for (const std::string& name : candidates(key)) {
        for (const path& folder : soundFonts) {
            if (isFile(folder / name)) {
                return folder / name;
            }
        }
    }
    return std::nullopt;
}

std::optional<path> SoundBanks::largestInstalled() const
{
    std::optional<path> largest;
    std::uintmax_t largestSize = 0;
    for (const path& folder : soundFonts) {
        std::error_code code;
        for (const auto& entry : std::filesystem::directory_iterator(folder, code)) {
            const path extension = entry.path().extension();
            const bool isBank = (extension == ".sf2" || extension == ".sf3") && isFile(entry.path());
            const std::uintmax_t size = isBank ? std::filesystem::file_size(entry.path(), code) : 0;
            if (isBank && !code && size > largestSize) {
                largest = entry.path();
                largestSize = size;
            }
        }
    }
    return largest;
}

std::optional<path> findSoundBank(std::string_view name, std::string_view extension)
{
    return firstIn([&](const SoundBanks& banks) { return banks.find(name, extension); });
}

std::optional<path> bestInstalledBank()
{
    return firstIn([](const SoundBanks& banks) { return banks.best(); });
}

} // namespace volvelle
