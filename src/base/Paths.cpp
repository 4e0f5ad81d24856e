#include "base/Paths.h"

#include <cstdlib>
#include <fstream>
#include <string>
#include <string_view>
#include <utility>

namespace volvelle {

namespace {

namespace fs = std::filesystem;

std::optional<fs::path> chosenResources;

bool isFolder(const fs::path& path)
{
    std::error_code error;
    return fs::is_directory(path, error);
}

std::optional<fs::path> environmentFolder(const char* name)
{
    const char* value = std::getenv(name);
    if (value == nullptr || *value != '/') {
        return std::nullopt;
    }
    return fs::path(value);
}

std::optional<std::string> documentsEntry(const fs::path& file)
{
    std::ifstream stream(file);
    constexpr std::string_view key = "XDG_DOCUMENTS_DIR=\"";
    for (std::string line; std::getline(stream, line);) {
        if (line.starts_with(key) && line.ends_with('"') && line.size() > key.size()) {
            return line.substr(key.size(), line.size() - key.size() - 1);
        }
    }
    return std::nullopt;
}

std::optional<fs::path> installedResources()
{
    std::error_code error;
    const fs::path executable = fs::read_symlink("/proc/self/exe", error);
    if (error) {
        return std::nullopt;
    }
    for (const char* place : {"resources", "../share/volvelle"}) {
        const fs::path folder = executable.parent_path() / place;
        if (isFolder(folder)) {
            return folder.lexically_normal();
        }
    }
    return std::nullopt;
}

// Of all programs together.
fs::path usersDocuments(const fs::path& home)
{
    const fs::path configuration = environmentFolder("XDG_CONFIG_HOME").value_or(home / ".config");
    constexpr std::string_view homeMark = "$HOME/";
    if (const auto entry = documentsEntry(configuration / "user-dirs.dirs")) {
        if (entry->starts_with(homeMark)) {
            return home / entry->substr(homeMark.size());
        }
        if (entry->starts_with('/')) {
            return fs::path(*entry);
        }
    }
    return home / "Documents";
}

} // namespace

std::optional<fs::path> resourcesFolder()
{
    return chosenResources ? chosenResources : installedResources();
}

std::vector<fs::path> resourcesFolders()
{
    std::vector<fs::path> folders;
    if (chosenResources) {
        folders.push_back(*chosenResources);
    }
    if (const auto installed = installedResources()) {
        folders.push_back(*installed);
    }
    return folders;
}

void setResourcesFolder(std::optional<fs::path> folder)
{
    chosenResources = std::move(folder);
}

std::optional<fs::path> documentsFolder()
{
    const auto home = environmentFolder("HOME");
    return home ? std::optional(usersDocuments(*home) / "Volvelle") : std::nullopt;
}

std::optional<fs::path> stateFolder()
{
    if (const auto states = environmentFolder("XDG_STATE_HOME")) {
        return *states / "volvelle";
    }
    const auto home = environmentFolder("HOME");
    return home ? std::optional(*home / ".local/state/volvelle") : std::nullopt;
}

} // namespace volvelle
