#pragma once

#include "services/audiodevice/WaitableClock.h"

#include <condition_variable>
#include <cstdint>
#include <mutex>
#include <vector>

namespace volvelle::test {

// A clock that stands still until a test turns it.
class HandWaitableClock : public WaitableClock {
public:
    static constexpr Time block{10'666'667}; // 512 frames at 48,000 Hz

    Time now() override;
    bool waitUntil(Time time, const std::function<bool()>& done) override;
    void wake() override;

    // Waits until `waiters` threads wait for a time to come. Fails the test after ten seconds.
    void settle(int waiters);

    // Turns the clock, and waits until that many threads wait again.
    void advance(Time length, int waiters);
    void advanceBlocks(int count, int waiters);

private:
    struct Waiter {
        Time time;
        std::int64_t seen; // the turn of the clock it last looked at
    };

    std::mutex mutex;
    std::condition_variable changed;
    std::condition_variable settled;
    Time current{1'000'000'000};
    std::int64_t turn = 0;
    std::vector<Waiter*> waiting;
};

} // namespace volvelle::test
