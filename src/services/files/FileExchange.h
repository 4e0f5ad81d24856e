#pragma once

#include "base/Result.h"
#include "services/files/HeldSignals.h"

#include <cstdint>
#include <filesystem>
#include <map>
#include <span>
#include <vector>

namespace volvelle {

// Files that change together. Each new one is written beside its place first, in a folder of its own there;
// then all take their places, or none does. Without carryOut(), and where that fails, nothing has changed at
// the end of its life. What asks the process to end waits until then. [any]
class FileExchange {
public:
    FileExchange() = default;
    ~FileExchange();
    FileExchange(const FileExchange&) = delete;
    FileExchange& operator=(const FileExchange&) = delete;

    // Makes a folder at once, with those above it. Each goes again unless all is carried out.
    Result<> makeFolder(const std::filesystem::path& folder);

    // Notes a file that is to hold these bytes, and one that is to go. A folder gets each name once.
    Result<> put(const std::filesystem::path& file, std::span<const std::uint8_t> bytes);
    Result<> remove(const std::filesystem::path& file);

    // Called once, as the last.
    Result<> carryOut();

private:
    struct Change {
        std::filesystem::path file;
        std::filesystem::path aside; // the new file, once all is done the old one
    };

    Result<> syncNew() const;
    int note(const std::filesystem::path& file);
    void goBack(std::size_t done);

    HeldSignals signals;
    std::vector<std::filesystem::path> made; // folders, in the order in which they were made
    std::map<std::filesystem::path, std::filesystem::path> sides; // of each folder that changes
    std::vector<Change> changes;
    bool isDone = false;
};

} // namespace volvelle
