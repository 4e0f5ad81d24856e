#include "services/audiodevice/BlockConverter.h"

#include <algorithm>
#include <samplerate.h>

namespace volvelle {

struct BlockConverter::Resampler {
    Resampler(src_callback_t feed, void* converter)
        : state(src_callback_new(feed, SRC_SINC_MEDIUM_QUALITY, 2, &error, converter))
    {
    }

    ~Resampler()
    {
        if (state != nullptr) {
            src_delete(state);
        }
    }

    Resampler(const Resampler&) = delete;
    Resampler& operator=(const Resampler&) = delete;

    int error = 0;
    SRC_STATE* state;
};

BlockConverter::BlockConverter(AudioSource& source, double rate, int channels)
    : source(source), ratio(rate / AudioSource::sampleRate), channels(channels)
{
    if (rate != AudioSource::sampleRate) {
        const src_callback_t callback = [](void* converter, float** data) { return feed(converter, data); };
        resampler = std::make_unique<Resampler>(callback, this);
    }
}

BlockConverter::~BlockConverter() = default;

bool BlockConverter::isUsable() const
{
    return !resampler || (resampler->state != nullptr && src_is_valid_ratio(ratio) != 0);
}

void BlockConverter::pull(float* interleaved, int frames) noexcept
{
    while (frames > 0) {
        const int count = std::min(frames, blockFrames);
        pullStereo(count);
        spread(interleaved, count);
        interleaved += static_cast<std::ptrdiff_t>(count) * channels;
        frames -= count;
    }
}

void BlockConverter::pullStereo(int frames) noexcept
{
    if (!resampler) {
        renderBlock(frames);
        std::copy_n(rendered.begin(), 2 * frames, stereo.begin());
        return;
    }
    const long given = isUsable() ? src_callback_read(resampler->state, ratio, frames, stereo.data()) : 0;
    std::fill(stereo.begin() + 2 * std::clamp<long>(given, 0, frames), stereo.begin() + 2L * frames, 0.0F);
}

long BlockConverter::renderBlock(int frames) noexcept
{
    source.render(left.data(), right.data(), frames);
    for (std::size_t i = 0; i < static_cast<std::size_t>(frames); ++i) {
        rendered[2 * i] = left[i];
        rendered[2 * i + 1] = right[i];
    }
    return frames;
}

void BlockConverter::spread(float* interleaved, int frames) const noexcept
{
    const auto width = static_cast<std::size_t>(channels);
    for (std::size_t i = 0; i < static_cast<std::size_t>(frames); ++i) {
        float* frame = interleaved + i * width;
        if (channels == 1) {
            frame[0] = 0.5F * (stereo[2 * i] + stereo[2 * i + 1]);
        } else {
            frame[0] = stereo[2 * i];
            frame[1] = stereo[2 * i + 1];
            std::fill(frame + 2, frame + width, 0.0F);
        }
    }
}

long BlockConverter::feed(void* converter, float** data) noexcept
{
    auto& self = *static_cast<BlockConverter*>(converter);
    *data = self.rendered.data();
    return self.renderBlock(blockFrames);
}

} // namespace volvelle
