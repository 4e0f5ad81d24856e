#pragma once

#include "base/Result.h"

#include <cstdint>
#include <filesystem>
#include <memory>
#include <optional>
#include <span>
#include <vector>

namespace volvelle {

// A version of a file besides the one in its place: what another program had put there when a document took
// the place again. The bytes stand in "versions" in the state folder and are never deleted. [main]
class NSFileVersion {
public:
    using Versions = std::vector<std::shared_ptr<NSFileVersion>>;

    NSFileVersion(std::filesystem::path place, bool resolved);

    // Without a value where they cannot be told; the oldest first.
    static std::optional<Versions> otherVersionsOfItemAtURL(const std::filesystem::path& url);

    // Those of them that nobody has resolved.
    static std::optional<Versions> unresolvedConflictVersionsOfItemAtURL(const std::filesystem::path& url);

    // Keeps bytes as a further version of the file, unresolved.
    static Result<> addVersionOfItemAtURL(const std::filesystem::path& url,
                                          std::span<const std::uint8_t> bytes);

    // Takes all versions off the list; their bytes go to "versions/kept".
    static Result<> removeOtherVersionsOfItemAtURL(const std::filesystem::path& url);

    // The folder that they go to; empty for none.
    static std::filesystem::path keptVersionsOfItemAtURL(const std::filesystem::path& url);

    // Where the bytes stand.
    const std::filesystem::path& url() const { return place; }

    bool resolved() const { return isResolved; }

    // Remembered on disk. A version that cannot be renamed stays as it was.
    void setResolved(bool value);

private:
    std::filesystem::path place;
    bool isResolved;
};

} // namespace volvelle
