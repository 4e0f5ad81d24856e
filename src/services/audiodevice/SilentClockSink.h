#pragma once

#include "base/realtime/AudioSink.h"
#include "services/audiodevice/WaitableClock.h"

#include <array>
#include <atomic>
#include <cstdint>
#include <memory>
#include <thread>

namespace volvelle {

// Pulls at the pace of a clock and drops what it gets, so that time passes where nothing sounds. A thread
// that falls far behind, as after a night's suspend, takes up the pace anew rather than catching up.
class SilentClockSink : public AudioSink {
public:
    static constexpr int blockFrames = 512;
    static constexpr WaitableClock::Time longestDelay = std::chrono::milliseconds(250);

    // On the system's clock where none is given.
    explicit SilentClockSink(std::shared_ptr<WaitableClock> given = nullptr);
    ~SilentClockSink() override;
    SilentClockSink(const SilentClockSink&) = delete;
    SilentClockSink& operator=(const SilentClockSink&) = delete;

    Result<> open(AudioSource& source) override;
    void close() override;

    std::string description() const override { return "Silent clock"; }

    bool isAudible() const override { return false; }

private:
    void run(AudioSource& source);

    std::shared_ptr<WaitableClock> clock;
    std::atomic<bool> stopping{false};
    std::array<float, blockFrames> left{};
    std::array<float, blockFrames> right{};
    std::thread thread;
};

} // namespace volvelle
