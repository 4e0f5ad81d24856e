#pragma once

#include "base/realtime/AudioSink.h"

#include <atomic>

namespace volvelle::test {

// Gives each frame its number, from 1, on the left and the negative of it on the right, and notices calls
// that overlap.
class CountingSource : public AudioSource {
public:
    void render(float* left, float* right, int count) noexcept override
    {
        overlapped = overlapped || busy.exchange(true);
        for (int i = 0; i < count; ++i) {
            ++number;
            left[i] = static_cast<float>(number);
            right[i] = -left[i];
        }
        frames = number;
        busy = false;
    }

    std::atomic<int> frames{0};
    std::atomic<bool> overlapped{false};

private:
    int number = 0; // not atomic: a race on it is a defect of the caller
    std::atomic<bool> busy{false};
};

} // namespace volvelle::test
