#pragma once

#include <atomic>
#include <cstddef>
#include <utility>
#include <vector>

namespace volvelle {

// A queue of fixed size between one thread that pushes and one that pops. Neither ever waits.
template <typename T>
class BoundedQueue {
public:
    // Holds up to `count` elements.
    explicit BoundedQueue(std::size_t count) : slots(count + 1) {}

    // False where the queue is full. [any] The one that pushes.
    bool push(const T& value) noexcept
    {
        const std::size_t tail = end.load(std::memory_order_relaxed);
        const std::size_t next = following(tail);
        if (next == begin.load(std::memory_order_acquire)) {
            return false;
        }
        slots[tail] = value;
        end.store(next, std::memory_order_release);
        return true;
    }

    // Elements that wait, at most. [any] The one that pushes.
    std::size_t size() const noexcept
    {
        const std::size_t tail = end.load(std::memory_order_relaxed);
        const std::size_t head = begin.load(std::memory_order_acquire);
        return tail >= head ? tail - head : tail + slots.size() - head;
    }

    bool isFull() const noexcept
    {
        return following(end.load(std::memory_order_relaxed)) == begin.load(std::memory_order_acquire);
    }

    // False where the queue is empty. [any] The one that pops.
    bool pop(T& value) noexcept
    {
        const std::size_t head = begin.load(std::memory_order_relaxed);
        if (head == end.load(std::memory_order_acquire)) {
            return false;
        }
        value = slots[head];
        begin.store(following(head), std::memory_order_release);
        return true;
    }

private:
    std::size_t following(std::size_t index) const noexcept
    {
        return index + 1 == slots.size() ? 0 : index + 1;
    }

    std::vector<T> slots;
    std::atomic<std::size_t> begin{0};
    std::atomic<std::size_t> end{0};
};

} // namespace volvelle
