#include "tests/support/TemporaryFolder.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <fstream>
#include <unistd.h>

namespace volvelle::test {

namespace fs = std::filesystem;

TemporaryFolder::TemporaryFolder()
{
    std::string name = (fs::temp_directory_path() / "volvelle-test-XXXXXX").string();
    EXPECT_NE(mkdtemp(name.data()), nullptr);
    path = name;
}

TemporaryFolder::~TemporaryFolder()
{
    std::error_code error;
    fs::permissions(path, fs::perms::owner_all, error);
    fs::remove_all(path, error);
}

fs::path TemporaryFolder::write(const fs::path& name, std::string_view content) const
{
    fs::create_directories((path / name).parent_path());
    std::ofstream(path / name, std::ios::binary) << content;
    return path / name;
}

fs::path TemporaryFolder::write(const fs::path& name, const std::vector<std::uint8_t>& bytes) const
{
    return write(name, std::string_view(reinterpret_cast<const char*>(bytes.data()), bytes.size()));
}

std::vector<std::string> TemporaryFolder::names() const
{
    std::vector<std::string> result;
    for (const auto& entry : fs::directory_iterator(path)) {
        result.push_back(entry.path().filename().string());
    }
    std::ranges::sort(result);
    return result;
}

} // namespace volvelle::test
