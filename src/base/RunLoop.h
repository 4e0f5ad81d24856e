#pragma once

#include "base/Clock.h"
#include "base/Timer.h"

#include <condition_variable>
#include <memory>
#include <mutex>
#include <optional>
#include <vector>

namespace volvelle {

// Runs what the main thread has to do: the main queue and the timers. A command runs it until it is done; the
// app's own loop calls turn() when the queue's hook wakes it or nextFire() has come. [main], but for wake()
class RunLoop {
public:
    // The clock must outlive the loop.
    explicit RunLoop(const Clock& source);

    // A repeating timer; see Timer. Wakes who waits for the next one.
    std::shared_ptr<Timer> schedule(double interval, std::weak_ptr<void> target, Timer::Action action);

    // Drains the main queue and fires the timers that are due, each at most once.
    void turn();

    // When the next timer is due, in seconds of the clock; no value without a timer.
    std::optional<double> nextFire() const;

    // Turns, and sleeps between turns until something is posted to the main queue or a timer is due. Ends
    // soon after stop(); a stop before the run ends it at once.
    void run();
    void stop();

    // Ends the sleep of run(). [any]
    void wake();

private:
    void removeEnded();

    const Clock& clock;
    std::vector<std::shared_ptr<Timer>> timers;
    bool stopped = false;
    std::mutex mutex;
    std::condition_variable condition;
    bool woken = false; // guarded by mutex
};

// The run loop of the main thread, on the steady clock or on the one set by a test.
RunLoop& mainRunLoop();

// Replaces the main run loop by a new one on `clock`, null for the steady clock. Timers of the old one end.
void setMainRunLoopClock(const Clock* clock);

} // namespace volvelle
