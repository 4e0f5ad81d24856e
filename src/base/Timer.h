#pragma once

#include <functional>
#include <memory>

namespace volvelle {

// A repeating timer of a run loop. It holds its target weakly and ends with it. Owned by whoever scheduled it
// and by the run loop, until it is invalidated. [main]
class Timer {
public:
    using Action = std::function<void()>;

    // `interval` in seconds, above 0. The action is not called once `target` is gone.
    Timer(double start, double interval, std::weak_ptr<void> target, Action action);

    // Ends the timer: its action is not called again.
    void invalidate();

    bool isValid() const { return !invalidated && !target.expired(); }

    double nextFire() const { return next; } // seconds of the run loop's clock

    // Calls the action if the time has come, once however late it is; the next time is the first one after
    // `now` on the timer's own grid.
    void fire(double now);

private:
    double next;
    double interval;
    std::weak_ptr<void> target;
    Action action;
    bool invalidated = false;
};

} // namespace volvelle
