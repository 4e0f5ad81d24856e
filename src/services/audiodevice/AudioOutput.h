#pragma once

#include "base/realtime/AudioSink.h"
#include "services/audiodevice/WaitableClock.h"

#include <functional>
#include <memory>
#include <string>

namespace volvelle {

class AudioOutputWorker;
class RenderGate;
class SilentClockSink;

// What an engine plays into: always pulls once started. It begins on a silent clock, moves to the sound
// device as soon as one is found and pulls steadily, and back to the clock while there is none; a lost device
// is looked for again every few seconds. All talk with devices is held on a thread of its own, which may hang
// without holding up anybody. One sink renders at any time, and no frame twice. One owner, one thread uses
// it.
class AudioOutput : public AudioSink {
public:
    struct Options {
        std::function<std::unique_ptr<AudioSink>()> makeDevice; // empty: the system's devices. [worker]
        std::shared_ptr<WaitableClock> clock;                   // null: the system's
        WaitableClock::Time lookAgain = std::chrono::seconds(3);
        WaitableClock::Time watch = std::chrono::milliseconds(50); // between two looks whether it was lost
        WaitableClock::Time patience = std::chrono::seconds(2);    // of close() with a device that hangs
        WaitableClock::Time firstWait{0}; // for a device to pull first, the source standing still meanwhile
        bool logs = true;                 // a device that is missing or lost; false where the owner tells
    };

    // For music: the first pull comes from the device, so that the first note is heard whole, or from the
    // clock once it is known that there is no device, or none came in a second and a half; the owner tells
    // the news.
    static Options forMusic();

    AudioOutput();
    explicit AudioOutput(Options given);
    ~AudioOutput() override;
    AudioOutput(const AudioOutput&) = delete;
    AudioOutput& operator=(const AudioOutput&) = delete;

    // Begins to pull from `source`, which must live until close(), and never waits for a device. Where it
    // runs already it stops first. Fails where not even the clock could be started. [main]
    Result<> open(AudioSource& source) override;

    // Ends pulling: no call into the source is under way once it returns, nor comes later. Waits for a device
    // to close, but no longer than `patience`; one that hangs is left to itself. [main]
    void close() override;

    bool isRunning() const { return worker != nullptr; }

    // Waits until the device sounds or it is known that there is none; true for the first. For those who play
    // from the first frame on. [main]
    bool waitForDevice(WaitableClock::Time longest);

    // True while the device renders, and not the clock. [main]
    bool isAudible() const override;

    // "PulseAudio: Speakers at 44100 Hz", or "Silent clock"; empty until it is known which renders. [main]
    std::string description() const override;

    // Why the last attempt to open a device failed; empty after one that succeeded. [main]
    std::string problem() const;

private:
    Options options;
    std::shared_ptr<RenderGate> gate;
    std::unique_ptr<SilentClockSink> silentClock;
    std::shared_ptr<AudioOutputWorker> worker;
};

} // namespace volvelle
