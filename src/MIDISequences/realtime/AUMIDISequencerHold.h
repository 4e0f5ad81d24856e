#pragma once

#include <atomic>
#include <thread>

namespace volvelle {

// Holds a sequencer while it lives, so that a cycle and the operations of other threads follow one another.
// [any] Waits by asking again; takes no lock.
class AUMIDISequencerHold {
public:
    // For a thread that renders: taken at once, or not at all.
    enum class Once : bool { yes };

    explicit AUMIDISequencerHold(std::atomic_flag& newFlag) noexcept : flag(newFlag)
    {
        while (flag.test_and_set(std::memory_order_acquire)) {
            std::this_thread::yield();
        }
    }

    AUMIDISequencerHold(std::atomic_flag& newFlag, Once /*once*/) noexcept
        : flag(newFlag), isTaken(!flag.test_and_set(std::memory_order_acquire))
    {
    }

    ~AUMIDISequencerHold()
    {
        if (isTaken) {
            flag.clear(std::memory_order_release);
        }
    }

    AUMIDISequencerHold(const AUMIDISequencerHold&) = delete;
    AUMIDISequencerHold& operator=(const AUMIDISequencerHold&) = delete;

    explicit operator bool() const { return isTaken; }

private:
    std::atomic_flag& flag;
    bool isTaken = true;
};

} // namespace volvelle
