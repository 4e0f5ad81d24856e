#pragma once

#include "services/audiodevice/WaitableClock.h"

#include <condition_variable>
#include <mutex>

namespace volvelle {

// The system's steady clock.
class SystemWaitableClock : public WaitableClock {
public:
    Time now() override;
    bool waitUntil(Time time, const std::function<bool()>& done) override;
    void wake() override;

private:
    std::mutex mutex;
    std::condition_variable changed;
};

} // namespace volvelle
