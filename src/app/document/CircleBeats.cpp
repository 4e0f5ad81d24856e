#include "app/document/CircleBeats.h"

#include "base/Checked.h"

#include <algorithm>
#include <cstdint>

namespace volvelle {

double circleBeats(double length)
{
    constexpr std::int64_t fewest = 16;
    return static_cast<double>(std::max(fewest, checkedCast<std::int64_t>(length)));
}

} // namespace volvelle
