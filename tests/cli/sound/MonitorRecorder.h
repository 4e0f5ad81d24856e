#pragma once

#include "tests/support/ChildProcess.h"

#include <chrono>

namespace volvelle::test {

// Listens to what the null sink of the PulseAudio server in use plays, from its making on.
class MonitorRecorder {
public:
    // Waits until something sounds; false where nothing has for half a minute.
    bool waitForSound()
    {
        const auto end = std::chrono::steady_clock::now() + std::chrono::seconds(30);
        while (std::chrono::steady_clock::now() < end) {
            const std::string bytes = recorder.readBytes();
            if (bytes.empty()) {
                return false;
            }
            if (bytes.find_first_not_of('\0') != std::string::npos) {
                return true;
            }
        }
        return false;
    }

private:
    ChildProcess recorder{{"parec", "-d", "null0.monitor", "--format=float32le", "--rate=48000",
                           "--channels=2", "--latency-msec=20"}};
};

} // namespace volvelle::test
