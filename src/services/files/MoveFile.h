#pragma once

#include "base/Status.h"

#include <filesystem>

namespace volvelle {

// Gives a file another name, where none stands; to another device its bytes are copied, put on disk, and then
// removed here. fileExistsErr where something has the name, fileNotFoundErr where the file or the folder it
// is to go to does not exist, else fileIOErr; nothing has changed then. [any]
[[nodiscard]] OSStatus moveFile(const std::filesystem::path& from, const std::filesystem::path& to);

// The same by copying alone. [any]
[[nodiscard]] OSStatus moveFileByCopying(const std::filesystem::path& from, const std::filesystem::path& to);

} // namespace volvelle
