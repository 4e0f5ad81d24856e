#pragma once

#include "base/Status.h"
#include "services/files/NewFile.h"

#include <cstddef>
#include <cstdint>
#include <filesystem>
#include <span>
#include <vector>

// Whole files, read and written so that a file on disk is never half of what it should be.
namespace volvelle {

inline constexpr std::size_t greatestFile = std::size_t{1} << 31U; // bytes

// The bytes of a file of up to `greatestFile`. fileNotFoundErr where none stands there, else fileIOErr;
// `bytes` is then as it was. [any]
[[nodiscard]] OSStatus readFile(const std::filesystem::path& path, std::vector<std::uint8_t>& bytes);

// Puts a file with these bytes at the path, in the place of an existing one where `overwrite` is set, else
// fileExistsErr. The bytes go to a temporary file in the same folder, which takes the name once they are on
// disk; on any failure nothing of it is left and an existing file is as it was. A link is followed, and the
// access rights of an existing file are kept; one that may not be written stays. A device or a pipe is
// written directly. A folder that does not exist is fileNotFoundErr, everything else fileIOErr. [any]
[[nodiscard]] OSStatus replaceFile(const std::filesystem::path& path, std::span<const std::uint8_t> bytes,
                                   bool overwrite);

// The same, answering 0 or the system's number of the failure, for writeFailure(); ECANCELED where `keep`
// will not have the file replaced, see NewFile. [any]
int putFile(const std::filesystem::path& path, std::span<const std::uint8_t> bytes, bool overwrite,
            const NewFile::Keeper& keep = {});

} // namespace volvelle
