#pragma once

#include <deque>
#include <functional>
#include <mutex>
#include <string>
#include <thread>

namespace volvelle {

// The queue of what waits to be done on the main thread: closures and log lines, in the order of posting.
// The main thread is the one that first used mainQueue(); it alone drains. Queued closures hold strongly what
// they capture.
class MainQueue {
public:
    using Closure = std::function<void()>;

    MainQueue();

    // Appends a closure, or a line for the console, and calls the wake-up hook. [any]
    void post(Closure closure);
    void postLine(std::string line);

    // Runs and writes what waits, and what that posts, until nothing waits, and then the lines of rendering
    // threads. May be called by a closure that itself is being drained. [main]
    void drain();

    // Takes the waiting log lines out of the queue and writes them in their order, and then the lines of
    // rendering threads; runs no closure. [main] In a fatal stop any.
    void writeWaitingLines();

    // Called after each posting, for instance to wake a sleeping run loop; empty for none. The hook must not
    // post. [main] At start.
    void setWakeUp(Closure hook);

    bool isMainThread() const { return std::this_thread::get_id() == mainThread; }

private:
    struct Entry {
        Closure closure; // empty: a line
        std::string line;
    };

    void append(Entry entry);

    std::thread::id mainThread;
    std::mutex mutex;
    std::deque<Entry> entries; // guarded by mutex
    Closure wakeUp;            // guarded by mutex
};

// The one main queue of the process.
MainQueue& mainQueue();

} // namespace volvelle
