#pragma once

#include <cstdint>
#include <filesystem>
#include <string>
#include <string_view>
#include <vector>

namespace volvelle::test {

// A folder of its own, removed with all that is in it.
class TemporaryFolder {
public:
    TemporaryFolder();
    ~TemporaryFolder();
    TemporaryFolder(const TemporaryFolder&) = delete;
    TemporaryFolder& operator=(const TemporaryFolder&) = delete;

    // Writes a file there, in folders below it too, and gives its path.
    std::filesystem::path write(const std::filesystem::path& name, std::string_view content) const;
    std::filesystem::path write(const std::filesystem::path& name,
                                const std::vector<std::uint8_t>& bytes) const;
    // The names of what stands in it, sorted.
    std::vector<std::string> names() const;

    std::filesystem::path path;
};

} // namespace volvelle::test
