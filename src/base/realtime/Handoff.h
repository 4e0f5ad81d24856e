#pragma once

#include "base/realtime/BoundedQueue.h"

#include <atomic>
#include <cstddef>
#include <memory>
#include <utility>

namespace volvelle {

// Hands objects to the render thread, which has one of them at a time, and brings the ones before back to be
// freed. Dies when no thread renders any more.
template <typename T>
class Handoff {
public:
    static constexpr std::size_t maximumReturned = 64; // a fuller queue puts off the next take

    Handoff() : returned(maximumReturned) {}

    Handoff(const Handoff&) = delete;
    Handoff& operator=(const Handoff&) = delete;

    ~Handoff()
    {
        collect();
        std::unique_ptr<T> last(pending.exchange(nullptr));
        std::unique_ptr<T> used(inUse);
    }

    // Replaces what the render thread has not taken yet. [main]
    void publish(std::unique_ptr<T> next)
    {
        const std::unique_ptr<T> unseen(pending.exchange(next.release(), std::memory_order_acq_rel));
        collect();
    }

    // Frees what came back. [main]
    void collect()
    {
        T* old = nullptr;
        while (returned.pop(old)) {
            delete old;
        }
    }

    // What is in use, null before the first take. [render]
    T* current() const noexcept { return inUse; }

    // Takes over what was published, if anything was; `farewell` gets what was in use before (null the first
    // time) with current() already the new one. [render]
    template <typename Farewell>
    bool take(Farewell&& farewell) noexcept
    {
        if (pending.load(std::memory_order_relaxed) == nullptr || returned.isFull()) {
            return false;
        }
        T* before = std::exchange(inUse, pending.exchange(nullptr, std::memory_order_acq_rel));
        farewell(before);
        if (before != nullptr) {
            returned.push(before);
        }
        return true;
    }

private:
    std::atomic<T*> pending{nullptr}; // owned
    T* inUse = nullptr;               // owned; render thread
    BoundedQueue<T*> returned;        // owned
};

} // namespace volvelle
