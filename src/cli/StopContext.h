#pragma once

#include <filesystem>

namespace volvelle {

// Lets a fatal stop tell, in a second line, which file was being loaded. For its lifetime, one at a time.
// [main]
class StopContext {
public:
    explicit StopContext(const std::filesystem::path& file);
    ~StopContext();
    StopContext(const StopContext&) = delete;
    StopContext& operator=(const StopContext&) = delete;
};

} // namespace volvelle
