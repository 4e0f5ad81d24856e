#pragma once

#include <cstdint>

namespace volvelle {

// What an operation of a service answers: noErr, or the number of what went wrong.
using OSStatus = std::int32_t;

inline constexpr OSStatus noErr = 0;
// A file that cannot be opened, read or written.
inline constexpr OSStatus fileNotFoundErr = -43;
inline constexpr OSStatus fileIOErr = -36;
inline constexpr OSStatus fileExistsErr = -48;

} // namespace volvelle
