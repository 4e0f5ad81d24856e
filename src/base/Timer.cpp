#include "base/Timer.h"

#include <cmath>
#include <utility>

namespace volvelle {

Timer::Timer(double start, double interval, std::weak_ptr<void> target, Action action)
    : next(start + interval), interval(interval), target(std::move(target)), action(std::move(action))
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
