#pragma once

#include "services/audiodevice/AudioOutput.h"
#include "services/audiodevice/RenderGate.h"

#include <atomic>
#include <memory>
#include <mutex>
#include <string>
#include <string_view>
#include <thread>

namespace volvelle {

// The thread of an output that finds, opens, watches and closes devices. It shares the ownership of all that
// it touches, so that it may outlive its output where a device hangs.
class AudioOutputWorker {
public:
    AudioOutputWorker(const AudioOutput::Options& options, std::shared_ptr<RenderGate> gate);

    // Begins the thread, or ends at once with the line for no device. [main]
    static void start(const std::shared_ptr<AudioOutputWorker>& worker);

    // [main]
    void askToEnd();

    // Waits until the thread has let go of its device, or for the patience of the options and then leaves the
    // thread to itself. Called once, at last. [main]
    void waitForEnd();

    // True once an attempt to open a device has failed and none has succeeded since. [any]
    bool hasNoDevice() const { return noDevice; }

    std::string description() const; // [any]
    std::string problem() const;     // [any]

private:
    void run();
    bool openDevice(AudioSink* device);
    void watch(const AudioSink& device);
    void pause(WaitableClock::Time length);
    void tell(std::string_view line) const;

    AudioOutput::Options options;
    std::shared_ptr<RenderGate> gate;
    std::thread thread; // main thread
    std::atomic<bool> ending{false};
    std::atomic<bool> ended{false};
    std::atomic<bool> noDevice{false};
    bool toldOfNone = false; // worker
    mutable std::mutex mutex;
    std::string deviceDescription; // guarded by mutex
    std::string deviceProblem;     // guarded by mutex
};

} // namespace volvelle
