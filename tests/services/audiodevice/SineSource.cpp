#include "tests/services/audiodevice/SineSource.h"

#include <chrono>
#include <cmath>
#include <numbers>

namespace volvelle::test {

void SineSource::render(float* left, float* right, int frames) noexcept
{
    {
        const std::lock_guard lock(mutex);
        for (int i = 0; i < frames; ++i) {
            const double turns = frequency * static_cast<double>(number++) / sampleRate;
            left[i] = static_cast<float>(amplitude * std::sin(2.0 * std::numbers::pi * turns));
            right[i] = left[i];
        }
    }
    rendered.notify_all();
}

bool SineSource::waitFor(int frames)
{
    std::unique_lock lock(mutex);
    const std::int64_t goal = number + frames;
    return rendered.wait_for(lock, std::chrono::seconds(10), [&] { return number >= goal; });
}

std::int64_t SineSource::frames()
{
    const std::lock_guard lock(mutex);
    return number;
}

} // namespace volvelle::test
