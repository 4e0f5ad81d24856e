#pragma once

#include "base/Result.h"

#include <filesystem>

namespace volvelle {

// The desktop's trash. [main]
class TrashCan {
public:
    virtual ~TrashCan() = default;

    // Moves a file there and gives its place, for restore().
    virtual Result<std::filesystem::path> take(const std::filesystem::path& file) = 0;

    // Moves it back to where it stood; a file that has the name by now stays, and this fails.
    virtual Result<> restore(const std::filesystem::path& place, const std::filesystem::path& file) = 0;
};

} // namespace volvelle
