#include "app/circle/CircleDrawing.h"

#include <cmath>

namespace volvelle {

bool CircleArc::hasPlace() const
{
    return std::isfinite(centre.x + centre.y + radius + startAngle + sweep + width + stretch);
}

} // namespace volvelle
