#pragma once

#include <filesystem>
#include <optional>
#include <vector>

// The folders that the program reads from and writes to. [main]
namespace volvelle {

// The folder that holds "Phrases" and "Phrases2", without a value where none was found. It is, in this order:
// the folder set by setResourcesFolder, "resources" beside the executable, "../share/volvelle" beside it.
std::optional<std::filesystem::path> resourcesFolder();

// The folders to look for resources in, the first one first: the one that was set, and the installed one.
// Each only where there is one.
std::vector<std::filesystem::path> resourcesFolders();

// Sets the first place to look, an absent value to forget it.
void setResourcesFolder(std::optional<std::filesystem::path> folder);

// "Volvelle" in the user's documents folder, which is XDG_DOCUMENTS_DIR of user-dirs.dirs, else "Documents"
// in the home folder; without a value where there is no home.
std::optional<std::filesystem::path> documentsFolder();

// Where the program keeps what it must not lose: "volvelle" in XDG_STATE_HOME, else in ".local/state" in the
// home folder; without a value where there is neither.
std::optional<std::filesystem::path> stateFolder();

} // namespace volvelle
