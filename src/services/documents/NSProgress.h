#pragma once

#include <cstdint>

namespace volvelle {

// How far something has come, in units of its own. [main]
struct NSProgress {
    std::int64_t totalUnitCount = 0;
    std::int64_t completedUnitCount = 0;
};

} // namespace volvelle
