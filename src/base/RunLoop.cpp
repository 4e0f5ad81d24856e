#include "base/RunLoop.h"

#include "base/MainQueue.h"

#include <algorithm>
#include <chrono>

namespace volvelle {

namespace {

std::unique_ptr<RunLoop>& mainLoop()
{
    static const SteadyClock steady;
    static auto loop = std::make_unique<RunLoop>(steady);
    return loop;
}

} // namespace

double SteadyClock::now() const
{
    return std::chrono::duration<double>(std::chrono::steady_clock::now().time_since_epoch()).count();
}

RunLoop::RunLoop(const Clock& source) : clock(source) {}

std::shared_ptr<Timer> RunLoop::schedule(double interval, std::weak_ptr<void> target, Timer::Action action)
{
    auto timer = std::make_shared<Timer>(clock.now(), interval, std::move(target), std::move(action));
    timers.push_back(timer);
    mainQueue().post([] {});
    return timer;
}

void RunLoop::turn()
{
    mainQueue().drain();
    removeEnded();
    const auto due = timers;
    const double now = clock.now();
    for (const auto& timer : due) {
        timer->fire(now);
    }
    removeEnded();
    mainQueue().drain();
}

std::optional<double> RunLoop::nextFire() const
{
    std::optional<double> next;
    for (const auto& timer : timers) {
        if (timer->isValid()) {
            next = std::min(next.value_or(timer->nextFire()), timer->nextFire());
        }
    }
    return next;
}

void RunLoop::run()
{
    mainQueue().setWakeUp([this] { wake(); });
    while (!stopped) {
        turn();
        if (stopped) {
            break;
        }
        std::unique_lock lock(mutex);
        const auto isAwake = [this] { return woken; };
        if (const auto next = nextFire()) {
            const double pause = std::max(0.0, *next - clock.now());
            condition.wait_for(lock, std::chrono::duration<double>(pause), isAwake);
        } else {
            condition.wait(lock, isAwake);
        }
        woken = false;
    }
    mainQueue().setWakeUp({});
    stopped = false;
}

void RunLoop::stop()
{
    stopped = true;
    wake();
}

void RunLoop::wake()
{
    {
        const std::lock_guard lock(mutex);
        woken = true;
    }
    condition.notify_one();
}

void RunLoop::removeEnded()
{
    std::erase_if(timers, [](const auto& timer) { return !timer->isValid(); });
}

RunLoop& mainRunLoop()
{
    return *mainLoop();
}

void setMainRunLoopClock(const Clock* clock)
{
    static const SteadyClock steady;
    mainLoop() = std::make_unique<RunLoop>(clock != nullptr ? *clock : steady);
}

} // namespace volvelle
