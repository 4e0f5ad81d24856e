#include "tests/services/audiodevice/HandWaitableClock.h"

#include <algorithm>
#include <gtest/gtest.h>

namespace volvelle::test {

WaitableClock::Time HandWaitableClock::now()
{
    const std::lock_guard lock(mutex);
    return current;
}

bool HandWaitableClock::waitUntil(Time time, const std::function<bool()>& done)
{
    std::unique_lock lock(mutex);
    Waiter waiter{time, -1};
    waiting.push_back(&waiter);
    bool isDone = done();
    while (!isDone && current < time) {
        waiter.seen = turn;
        settled.notify_all();
        changed.wait(lock);
        isDone = done();
    }
    std::erase(waiting, &waiter);
    return isDone;
}

void HandWaitableClock::wake()
{
    {
        const std::lock_guard lock(mutex);
        ++turn;
    }
    changed.notify_all();
}

void HandWaitableClock::settle(int waiters)
{
    std::unique_lock lock(mutex);
    const auto areSettled = [&] {
        return std::count_if(waiting.begin(), waiting.end(), [this](const Waiter* waiter) {
                   return waiter->seen == turn && waiter->time > current;
               }) >= waiters;
    };
    EXPECT_TRUE(settled.wait_for(lock, std::chrono::seconds(10), areSettled)) << "threads are missing";
}

void HandWaitableClock::advance(Time length, int waiters)
{
    {
        const std::lock_guard lock(mutex);
        current += length;
        ++turn;
    }
    changed.notify_all();
    settle(waiters);
}

void HandWaitableClock::advanceBlocks(int count, int waiters)
{
    for (int i = 0; i < count; ++i) {
        advance(block, waiters);
    }
}

} // namespace volvelle::test
