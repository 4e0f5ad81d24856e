#pragma once

#include <chrono>
#include <functional>

namespace volvelle {

// A steady clock that threads wait on; tests turn one by hand. Shared by all who wait on it.
class WaitableClock {
public:
    using Time = std::chrono::nanoseconds; // since a fixed point of the clock's own

    virtual ~WaitableClock() = default;

    // [any]
    virtual Time now() = 0;

    // Returns once `time` is reached, or earlier once done() is true, and gives what done() was. done() is
    // asked at the start and after each wake(), under the clock's own lock: it must not call the clock.
    // [main, worker]
    virtual bool waitUntil(Time time, const std::function<bool()>& done) = 0;

    // Has everybody who waits ask done() again. [main, worker]
    virtual void wake() = 0;
};

} // namespace volvelle
