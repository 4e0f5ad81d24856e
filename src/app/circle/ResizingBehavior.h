#pragma once

#include "app/circle/CGRect.h"

#include <optional>

namespace volvelle {

class MIDICircleViewBase;

// How a picture goes into a frame. [any]
class ResizingBehavior {
public:
    enum Case : int { fitInside = 0, fillOutside = 1, stretch = 2, centered = 3 };

    constexpr ResizingBehavior(Case value) : value(value) {}

    Case value;

    constexpr int rawValue() const { return value; }

    // The case with that raw value, if there is one.
    static std::optional<ResizingBehavior> fromRawValue(int rawValue);

    // Where `rect` goes in `target`; `rect` itself where the two are equal or `target` is empty. Else the
    // scales are left in `instance`.
    CGRect apply(const CGRect& rect, const CGRect& target, MIDICircleViewBase& instance) const;

    friend constexpr bool operator==(ResizingBehavior, ResizingBehavior) = default;
};

} // namespace volvelle
