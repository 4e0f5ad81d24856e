#include "services/audiodevice/SilentClockSink.h"

#include "services/audiodevice/SystemWaitableClock.h"

#include <system_error>
#include <utility>

namespace volvelle {

namespace {

WaitableClock::Time lengthOf(std::int64_t blocks)
{
    constexpr std::int64_t nanoseconds = 1'000'000'000;
    return WaitableClock::Time(blocks * SilentClockSink::blockFrames * nanoseconds /
                               static_cast<std::int64_t>(AudioSource::sampleRate));
}

} // namespace

SilentClockSink::SilentClockSink(std::shared_ptr<WaitableClock> given) : clock(std::move(given))
{
    if (!clock) {
        clock = std::make_shared<SystemWaitableClock>();
    }
}

SilentClockSink::~SilentClockSink()
{
    close();
}

Result<> SilentClockSink::open(AudioSource& source)
{
    close();
    stopping = false;
    try {
        thread = std::thread([this, &source] { run(source); });
    } catch (const std::system_error&) {
        return failure("The silent clock could not be started.");
    }
    return {};
}

void SilentClockSink::close()
{
    if (thread.joinable()) {
        stopping = true;
        clock->wake();
        thread.join();
    }
}

void SilentClockSink::run(AudioSource& source)
{
    WaitableClock::Time start = clock->now();
    std::int64_t blocks = 1;
    const auto isStopping = [this] { return stopping.load(); };
    while (!clock->waitUntil(start + lengthOf(blocks), isStopping)) {
        source.render(left.data(), right.data(), blockFrames);
        ++blocks;
        const WaitableClock::Time now = clock->now();
        if (now - (start + lengthOf(blocks)) > longestDelay) {
            start = now;
            blocks = 1;
        }
    }
}

} // namespace volvelle
