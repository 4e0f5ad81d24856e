#pragma once

#include <filesystem>

namespace volvelle {

// A folder of this process alone, where temporary files stand, with rights for its user only. It goes with
// its object, and all that is in it; where the program ends at once, as a pending file. [any]
class PrivateFolder {
public:
    PrivateFolder();
    ~PrivateFolder();
    PrivateFolder(const PrivateFolder&) = delete;
    PrivateFolder& operator=(const PrivateFolder&) = delete;

    // Where it could not be made, one that never exists.
    const std::filesystem::path& path() const { return place; }

private:
    std::filesystem::path place;
    int slot = -1; // among the pending files
};

} // namespace volvelle
