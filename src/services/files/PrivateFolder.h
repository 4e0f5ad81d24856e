#pragma once

#include <filesystem>

namespace volvelle {

// A folder of this process alone, where temporary files stand, with rights for its user only. It goes with
// its object, and all that is in it. [any]
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
};

} // namespace volvelle
