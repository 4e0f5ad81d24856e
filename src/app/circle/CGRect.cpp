#include "app/circle/CGRect.h"

#include <algorithm>
#include <cmath>

namespace volvelle {

CGRect CGRect::standardized() const
{
    return {std::min(x, x + width), std::min(y, y + height), std::abs(width), std::abs(height)};
}

} // namespace volvelle
