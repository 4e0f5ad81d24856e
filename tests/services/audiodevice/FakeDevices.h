#pragma once

#include "base/realtime/AudioSink.h"

#include <functional>
#include <memory>
#include <string>
#include <vector>

namespace volvelle::test {

// Devices that behave as a test says, and pull when it pulls. Its sinks may outlive it.
class FakeDevices {
public:
    enum class Answer { opens, fails, hangs };

    FakeDevices();
    ~FakeDevices(); // frees what hangs

    std::function<std::unique_ptr<AudioSink>()> factory() const;

    // What the next attempts to open and to close do.
    void answerOpen(Answer answer);
    void answerClose(Answer answer);

    // Lets those that hang go on.
    void release();

    // Each waits for it, and fails the test after ten seconds.
    void waitForOpen(int times);
    void waitForAttempts(int times);
    void waitForClosings(int times); // begun
    void waitForClosed(int times);

    // Pulls through the open device; what its left channel got.
    std::vector<float> pull(int frames, int block = 480);

    // The device is lost from now on.
    void lose();

    struct State;

private:
    std::shared_ptr<State> state;
};

} // namespace volvelle::test
