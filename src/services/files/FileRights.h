#pragma once

#include <filesystem>

namespace volvelle {

// Gives the open file what says who may do what with another: mode, owner, group and access list, and the
// attributes that users gave it. An owner or group that this process cannot give keeps its own rights from
// the others. False where the mode cannot be set; `errno` says why. [any]
bool takeRights(int descriptor, const std::filesystem::path& other);

} // namespace volvelle
