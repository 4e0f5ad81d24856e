#include "services/audiograph/graph/ConnectionConverter.h"

#include "services/audiograph/graph/RenderStep.h"

#include <algorithm>
#include <cmath>
#include <samplerate.h>

namespace volvelle {

ConnectionConverter::ConnectionConverter(double from, double to) : fromRate(from), toRate(to)
{
    int error = 0;
    state = src_new(SRC_SINC_MEDIUM_QUALITY, 2, &error);
}

ConnectionConverter::~ConnectionConverter()
{
    src_delete(state);
}

bool ConnectionConverter::isPossible(double fromRate, double toRate)
{
    return fromRate > 0.0 && toRate > 0.0 && src_is_valid_ratio(toRate / fromRate) != 0;
}

void ConnectionConverter::pull(RenderStep& source, float* toLeft, float* toRight, int frames) noexcept
{
    int done = 0;
    while (done < frames && state != nullptr) {
        if (count == 0) {
            fill(source, framesToPull(frames - done));
        }
        SRC_DATA data{};
        data.data_in = input.data() + static_cast<std::ptrdiff_t>(2) * position;
        data.input_frames = count;
        data.data_out = output.data();
        data.output_frames = std::min(frames - done, maximumFrames);
        data.src_ratio = toRate / fromRate;
        if (src_process(state, &data) != 0) {
            break;
        }
        position += static_cast<int>(data.input_frames_used);
        count -= static_cast<int>(data.input_frames_used);
        delivered += data.output_frames_gen;
        for (long i = 0; i < data.output_frames_gen; ++i, ++done) {
            toLeft[done] = output[static_cast<std::size_t>(2 * i)];
            toRight[done] = output[static_cast<std::size_t>(2 * i + 1)];
        }
    }
    std::fill(toLeft + done, toLeft + frames, 0.0F);
    std::fill(toRight + done, toRight + frames, 0.0F);
}

int ConnectionConverter::framesToPull(int frames) const noexcept
{
    constexpr double halfFilter = 48.0; // frames of the lower rate
    const double ratio = fromRate / toRate;
    const double needed = static_cast<double>(delivered + frames) * ratio + halfFilter * std::max(1.0, ratio);
    const double missing = std::ceil(needed) - static_cast<double>(pulled);
    return static_cast<int>(std::clamp(missing, 1.0, static_cast<double>(maximumFrames)));
}

void ConnectionConverter::fill(RenderStep& source, int wanted) noexcept
{
    position = 0;
    count = wanted;
    pulled += count;
    source.node->renderNode(source.inputs, left.data(), right.data(), count);
    for (std::size_t i = 0; i < static_cast<std::size_t>(count); ++i) {
        input[2 * i] = left[i];
        input[2 * i + 1] = right[i];
    }
}

} // namespace volvelle
