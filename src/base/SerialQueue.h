#pragma once

#include <functional>
#include <mutex>
#include <string>
#include <utility>

namespace volvelle {

// Runs bodies one after the other, each on its caller's thread, which waits for its turn. A body that calls
// sync() of its own queue is the caller's error: it would wait for itself. [main, worker, sender]
class SerialQueue {
public:
    explicit SerialQueue(std::string newLabel) : label(std::move(newLabel)) {}

    const std::string label; // for diagnosis

    // Runs the body alone, and gives what it gives.
    template <class Body>
    decltype(auto) sync(Body&& body) const
    {
        const std::lock_guard<std::mutex> turn(mutex);
        return std::invoke(std::forward<Body>(body));
    }

private:
    mutable std::mutex mutex;
};

} // namespace volvelle
