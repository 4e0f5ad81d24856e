#include "base/Timer.h"

#include <cmath>
#include <utility>

namespace volvelle {

Timer::Timer(double start, double seconds, std::weak_ptr<void> owner, Action call)
    : next(start + seconds), interval(seconds), target(std::move(owner)), action(std::move(call))
{
}

void Timer::invalidate()
{
    invalidated = true;
}

void Timer::fire(double now)
{
    const auto held = target.lock();
    if (invalidated || !held || now < next) {
        return;
    }
    const double missed = std::floor((now - next) / interval);
    next += (missed + 1.0) * interval;
    action();
}

} // namespace volvelle
