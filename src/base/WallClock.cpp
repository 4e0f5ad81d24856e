#include "base/WallClock.h"

#include <chrono>

namespace volvelle {

double WallClock::now() const
{
    return std::chrono::duration<double>(std::chrono::system_clock::now().time_since_epoch()).count();
}

} // namespace volvelle
