#pragma once

#include "base/Clock.h"

namespace volvelle {

// The time of day as seconds since 1970. Unlike other clocks it goes back where someone sets it back. [any]
class WallClock : public Clock {
public:
    double now() const override;
};

} // namespace volvelle
