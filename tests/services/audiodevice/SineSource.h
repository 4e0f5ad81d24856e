#pragma once

#include "base/realtime/AudioSink.h"

#include <condition_variable>
#include <cstdint>
#include <mutex>

namespace volvelle::test {

// 440 Hz at half of full scale on both sides, and somebody who waits for frames. It locks: only for tests
// whose devices have no deadline to miss.
class SineSource : public AudioSource {
public:
    static constexpr double frequency = 440.0; // Hz
    static constexpr double amplitude = 0.5;

    void render(float* left, float* right, int frames) noexcept override;

    // Waits until `frames` more frames were rendered; false where that takes longer than ten seconds.
    bool waitFor(int frames);

    std::int64_t frames();

private:
    std::mutex mutex;
    std::condition_variable rendered;
    std::int64_t number = 0; // guarded by mutex
};

} // namespace volvelle::test
