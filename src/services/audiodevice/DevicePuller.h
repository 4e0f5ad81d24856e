#pragma once

#include "services/audiodevice/BlockConverter.h"
#include "services/audiodevice/RunawayGuard.h"

#include <atomic>

namespace volvelle {

// What stands in a device's callback: pulls from a source while the device is sound, and is lost for good
// once it runs away or reports a failure.
class DevicePuller {
public:
    // What a callback tells its device.
    enum class Answer { goOn, stop };

    // For a device of `rate` Hz and `channels`. [any]
    DevicePuller(AudioSource& source, double rate, int channels);

    bool isUsable() const { return converter.isUsable(); }

    // Fills `frames` interleaved frames, with silence once lost. [render]
    Answer pull(float* interleaved, int frames, WaitableClock::Time now) noexcept;

    // The device failed. [any]
    void lose() { lost = true; }

    bool isLost() const { return lost; }

private:
    BlockConverter converter;
    RunawayGuard guard;
    int channels;
    std::atomic<bool> lost{false};
};

} // namespace volvelle
