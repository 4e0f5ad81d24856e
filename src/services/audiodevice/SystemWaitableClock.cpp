#include "services/audiodevice/SystemWaitableClock.h"

namespace volvelle {

WaitableClock::Time SystemWaitableClock::now()
{
    return std::chrono::duration_cast<Time>(std::chrono::steady_clock::now().time_since_epoch());
}

bool SystemWaitableClock::waitUntil(Time time, const std::function<bool()>& done)
{
    std::unique_lock lock(mutex);
    const std::chrono::steady_clock::time_point point{
        std::chrono::duration_cast<std::chrono::steady_clock::duration>(time)};
    return changed.wait_until(lock, point, done);
}

void SystemWaitableClock::wake()
{
    {
        const std::lock_guard lock(mutex);
    }
    changed.notify_all();
}

} // namespace volvelle
