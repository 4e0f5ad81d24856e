#pragma once

#include "base/Clock.h"
#include "base/RunLoop.h"

namespace volvelle::test {

// A clock that a test turns by hand, with the main run loop on it for its lifetime.
class HandClock : public Clock {
public:
    HandClock() { setMainRunLoopClock(this); }

    ~HandClock() override { setMainRunLoopClock(nullptr); }

    HandClock(const HandClock&) = delete;
    HandClock& operator=(const HandClock&) = delete;

    double now() const override { return seconds; }

    // Moves on and turns the main run loop once.
    void advance(double by)
    {
        seconds += by;
        mainRunLoop().turn();
    }

private:
    double seconds = 100.0;
};

} // namespace volvelle::test
