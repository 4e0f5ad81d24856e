#include "app/circle/ResizingBehavior.h"

#include "app/circle/MIDICircleViewBase.h"

#include <algorithm>
#include <cmath>

namespace volvelle {

std::optional<ResizingBehavior> ResizingBehavior::fromRawValue(int rawValue)
{
    if (rawValue < fitInside || rawValue > centered) {
        return {};
    }
    return static_cast<Case>(rawValue);
}

CGRect ResizingBehavior::apply(const CGRect& rect, const CGRect& target, MIDICircleViewBase& instance) const
{
    if (rect == target || target == CGRect{}) {
        return rect;
    }
    CGSize scales{std::abs(target.width / rect.width), std::abs(target.height / rect.height)};
    if (value == fitInside) {
        scales.width = scales.height = std::min(scales.width, scales.height);
    } else if (value == fillOutside) {
        scales.width = scales.height = std::max(scales.width, scales.height);
    } else if (value == centered) {
        scales = {1.0, 1.0};
    }
    instance.scaling = scales;
    const CGRect own = rect.standardized();
    const CGRect room = target.standardized();
    const CGSize size{own.width * scales.width, own.height * scales.height};
    return {room.x + (room.width - size.width) / 2.0, room.y + (room.height - size.height) / 2.0, size.width,
            size.height};
}

} // namespace volvelle
