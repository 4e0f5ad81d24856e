#pragma once

#include "base/realtime/AudioSink.h"

#include <array>
#include <memory>

namespace volvelle {

// Brings a source to a device's rate and channels: the mean of both to one channel, both to the first two of
// more, the others silent. Allocates in its constructor alone.
class BlockConverter {
public:
    // For `rate` Hz and 1 or more channels. `source` must outlive the converter. [any]
    BlockConverter(AudioSource& source, double rate, int channels);
    ~BlockConverter();
    BlockConverter(const BlockConverter&) = delete;
    BlockConverter& operator=(const BlockConverter&) = delete;

    // False where the rate is beyond what can be converted; pull() then gives silence. [any]
    bool isUsable() const;

    // Writes `frames` frames, interleaved. [render]
    void pull(float* interleaved, int frames) noexcept;

private:
    static constexpr int blockFrames = 512;
    struct Resampler;

    void pullStereo(int frames) noexcept;
    long renderBlock(int frames) noexcept;
    void spread(float* interleaved, int frames) const noexcept;
    static long feed(void* converter, float** data) noexcept;

    AudioSource& source;
    double ratio; // output frames for each of the source's
    int channels;
    std::unique_ptr<Resampler> resampler; // null where the rate is the source's
    std::array<float, blockFrames> left{};
    std::array<float, blockFrames> right{};
    std::array<float, std::size_t{2} * blockFrames> rendered{}; // interleaved, at the source's rate
    std::array<float, std::size_t{2} * blockFrames> stereo{};   // interleaved, at the device's rate
};

} // namespace volvelle
