#include "app/document/CircleBeats.h"

#include "app/circle/MIDICircleViewDelegate.h"
#include "base/Checked.h"

#include <algorithm>
#include <cstdint>

namespace volvelle {

double circleBeats(double length)
{
    return std::max(usualBeats, static_cast<double>(checkedCast<std::int64_t>(length)));
}

} // namespace volvelle
