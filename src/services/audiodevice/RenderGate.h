#pragma once

#include "base/realtime/AudioSink.h"

#include <atomic>
#include <cstdint>

namespace volvelle {

// Stands between one source and the two sinks that pull from it, the silent clock and a device, and lets one
// of them through at any time; the other gets silence. The turn changes between two blocks, so that the
// source renders each frame once and in order. A device that was admitted takes over by itself once it has
// pulled steadily, and the clock takes over from a device that no longer pulls.
class RenderGate {
public:
    static constexpr int warmUpFrames = 4800;  // a device pulls before it takes over: more than it buffers
    static constexpr int stallFrames = 96'000; // the clock pulls while the device pulls none
    static constexpr int wakeFrames = 240'000; // the same of one whose first pulls only fill its buffer

    explicit RenderGate(AudioSource& source);
    RenderGate(const RenderGate&) = delete;
    RenderGate& operator=(const RenderGate&) = delete;

    // What each sink is opened with; they live as long as the gate.
    AudioSource& clockEntry() { return clockSide; }

    AudioSource& deviceEntry() { return deviceSide; }

    // Music that begins waits for its device: the clock renders nothing for so many frames of its own, and
    // the device takes over with its first pull, silence before its music being no loss. Ended by
    // dismissDevice(). [before the sinks are opened]
    void awaitDevice(int longest);

    // True until a device pulled, was dismissed, or did not come in time. [any]
    bool isAwaitingDevice() const { return turn == Turn::deviceAwaited; }

    // Allows the device to take over; ends that, and gives the turn back to the clock. [any]
    void admitDevice();
    void dismissDevice();

    // True while the device has the turn. [any]
    bool isDevicePlaying() const { return turn == Turn::device; }

    // Ends all rendering for good; no call into the source is under way once it returns, and none comes.
    // [main, worker]
    void shut();

private:
    enum class Turn { deviceAwaited, clock, clockOrDevice, device, nobody };

    class ClockSide : public AudioSource {
    public:
        explicit ClockSide(RenderGate& gate) : gate(gate) {}

        void render(float* left, float* right, int frames) noexcept override;

    private:
        RenderGate& gate;
    };

    class DeviceSide : public AudioSource {
    public:
        explicit DeviceSide(RenderGate& gate) : gate(gate) {}

        void render(float* left, float* right, int frames) noexcept override;

    private:
        RenderGate& gate;
    };

    void noteWait(int frames) noexcept;
    void noteFirstPull() noexcept;
    void noteStall(int frames) noexcept;
    void noteProgress(int frames) noexcept;
    bool hasTurn(bool device) const noexcept;
    void renderInTurn(bool device, float* left, float* right, int frames) noexcept;

    AudioSource& source;
    ClockSide clockSide{*this};
    DeviceSide deviceSide{*this};
    std::atomic<Turn> turn{Turn::clock};
    std::atomic<bool> rendering{false};
    std::atomic<int> patience{0}; // frames of the clock for which a device is awaited yet
    std::atomic<int> warm{0};     // frames the device pulled since it may take over, no more than needed
    std::atomic<int> stalled{0};  // frames the clock pulled since the device last pulled
};

} // namespace volvelle
