#pragma once

#include <filesystem>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

// Where the sound banks are. A bank is asked for by the name and extension of a resource, as in
// ("gs_instruments", "dls") or ("soundfont1", "sf2"). [main, worker] They read the disk.
namespace volvelle {

// The folders of the system and of the user in which SoundFonts stand; those that do not exist are left out.
std::vector<std::filesystem::path> soundFontFolders();

// Looks for banks in a resources folder, and then, by the map in "banks.json" there, under other names in
// folders of SoundFonts. A map that cannot be read is logged and counts as empty.
class SoundBanks {
public:
    SoundBanks(std::optional<std::filesystem::path> resources, std::vector<std::filesystem::path> soundFonts);

    std::optional<std::filesystem::path> find(std::string_view name, std::string_view extension) const;

    // The built-in sounds: "gs_instruments.dls" from the resources, else the best bank of the map's list
    // "best", else any SoundFont that is there, the largest first.
    std::optional<std::filesystem::path> best() const;

private:
    std::vector<std::string> candidates(const std::string& key) const;
    std::optional<std::filesystem::path> installed(const std::string& key) const;
    std::optional<std::filesystem::path> largestInstalled() const;

    std::optional<std::filesystem::path> resources;
    std::vector<std::filesystem::path> soundFonts;
};

// The same over resourcesFolders(), which are asked each time, and soundFontFolders(). [main]
std::optional<std::filesystem::path> findSoundBank(std::string_view name, std::string_view extension);
std::optional<std::filesystem::path> bestInstalledBank();

} // namespace volvelle
