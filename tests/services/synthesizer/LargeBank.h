#pragma once

#include <filesystem>

namespace volvelle::test {

// A SoundFont of more than 32 MiB: the installed small one with silence after its samples. Removed with
// this.
class LargeBank {
public:
    LargeBank();
    ~LargeBank();
    LargeBank(const LargeBank&) = delete;
    LargeBank& operator=(const LargeBank&) = delete;

    const std::filesystem::path path;
};

} // namespace volvelle::test
