#pragma once

#include <filesystem>

namespace volvelle {

// Gives a file another name, where none stands; to another device its bytes are copied, put on disk, and then
// removed here. 0 or the system's number of the failure, for writeFailure(): EEXIST where something has the
// name, ENOENT where the file or the folder it is to go to does not exist; nothing has changed then. [any]
[[nodiscard]] int moveFile(const std::filesystem::path& from, const std::filesystem::path& to);

// The same by copying alone. [any]
[[nodiscard]] int moveFileByCopying(const std::filesystem::path& from, const std::filesystem::path& to);

} // namespace volvelle
