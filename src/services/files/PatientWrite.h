#pragma once

#include <cstdint>
#include <filesystem>
#include <functional>
#include <span>

// Writing to what may not take the bytes for long, such as a pipe that nobody reads.
namespace volvelle {

// Why it is not to be waited for any longer, the system's number of a failure; 0 where it is.
using EndOfPatience = std::function<int()>;

// Writes everything to a pipe or a device that is open, or opens it for that. Waits for its reader, and while
// it is full, until `end` says so, which is asked every few hundredths of a second. 0 or the system's number
// of the failure. [any]
int writePatiently(int descriptor, std::span<const std::uint8_t> bytes, const EndOfPatience& end);
int writePatiently(const std::filesystem::path& path, std::span<const std::uint8_t> bytes,
                   const EndOfPatience& end);

} // namespace volvelle
