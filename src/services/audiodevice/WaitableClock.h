#pragma once

#include <chrono>
#include <functional>

namespace volvelle {

// A steady clock that threads wait on; tests turn one by hand. Shared by all who wait on it.
class WaitableClock {
public:
    using Time = std::chrono::nanoseconds; // since a fixed point of the clock's own

    virtual ~WaitableClock() = default;

    // [any thread]
    virtual Time now() = 0;

    // Returns once `time` is reached, or earlier once done() is true, and gives what done() was. done() is
    // asked at the start and after each wake(), under the clock's own lock: it must not call the clock.
    // [any thread but a device's]
    virtual bool waitUntil(Time time, const std::function<bool()>& done) = 0;

    // Has everybody who waits ask done() again. [any thread but a device's]
    virtual void wake() = 0;
};

} // namespace volvelle
