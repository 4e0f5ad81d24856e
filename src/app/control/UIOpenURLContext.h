#pragma once

#include <filesystem>

namespace volvelle {

// A file that is handed to the application from outside.
struct UIOpenURLContext {
    std::filesystem::path url;
    bool openInPlace = true; // false: a copy of it is opened

    bool operator==(const UIOpenURLContext&) const = default;
};

} // namespace volvelle
