#pragma once

#include <gtest/gtest.h>

#include <filesystem>
#include <fstream>
#include <string>
#include <string_view>
#include <unistd.h>

namespace volvelle::test {

// A folder of its own for its lifetime.
class TemporaryFolder {
public:
    TemporaryFolder()
    {
        std::string name = (std::filesystem::temp_directory_path() / "audio-XXXXXX").string();
        EXPECT_NE(mkdtemp(name.data()), nullptr);
        path = name;
    }

    ~TemporaryFolder() { std::filesystem::remove_all(path); }

    TemporaryFolder(const TemporaryFolder&) = delete;
    TemporaryFolder& operator=(const TemporaryFolder&) = delete;

    std::filesystem::path path;

    std::filesystem::path put(std::string_view name, std::string_view content) const
    {
        const auto file = path / name;
        std::ofstream(file, std::ios::binary) << content;
        return file;
    }
};

} // namespace volvelle::test
