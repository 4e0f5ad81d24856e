#pragma once

#include "services/musicsequence/MusicSequence.h"

#include <cstdint>
#include <filesystem>
#include <span>
#include <string>
#include <sys/types.h>

namespace volvelle {

// A new file of its own name in a folder, removed at the end of its life unless it took another name.
class TemporaryFile {
public:
    TemporaryFile() = default;
    ~TemporaryFile();
    TemporaryFile(const TemporaryFile&) = delete;
    TemporaryFile& operator=(const TemporaryFile&) = delete;

    // Each is 0 or the system's error number.
    int create(const std::filesystem::path& folder);
    int setMode(mode_t mode) const;
    int write(std::span<const std::uint8_t> bytes) const;
    int finish(); // puts the bytes on disk and closes
    int takeName(const std::filesystem::path& target, bool overwrite);

private:
    int openNew(const std::filesystem::path& folder);
    void forget();

    std::string name;
    int descriptor = -1;
    int slot = -1; // among the pending files
};

// Writes everything, 0 or the system's error number.
int writeAll(int descriptor, std::span<const std::uint8_t> bytes);

} // namespace volvelle
