#include "services/audiodevice/RateConverter.h"

#include <samplerate.h>

namespace volvelle {

struct RateConverter::State {
    State() : converter(src_new(SRC_SINC_BEST_QUALITY, 2, &error)) {}

    ~State()
    {
        if (converter != nullptr) {
            src_delete(converter);
        }
    }

    State(const State&) = delete;
    State& operator=(const State&) = delete;

    int error = 0;
    SRC_STATE* converter;
};

RateConverter::RateConverter(double ratio) : ratio(ratio), state(std::make_unique<State>()) {}

RateConverter::~RateConverter() = default;

bool RateConverter::convert(const std::vector<float>& interleaved, bool isEnd, std::vector<float>& result)
{
    constexpr long stepFrames = 4096;
    SRC_DATA data = {};
    data.data_in = interleaved.data();
    data.input_frames = static_cast<long>(interleaved.size() / 2);
    data.src_ratio = ratio;
    data.end_of_input = isEnd ? 1 : 0;
    do {
        const std::size_t filled = result.size();
        result.resize(filled + std::size_t{2} * stepFrames);
        data.data_out = result.data() + filled;
        data.output_frames = stepFrames;
        if (state->converter == nullptr || src_process(state->converter, &data) != 0) {
            return false;
        }
        result.resize(filled + 2 * static_cast<std::size_t>(data.output_frames_gen));
        data.data_in += 2 * data.input_frames_used;
        data.input_frames -= data.input_frames_used;
    } while (data.output_frames_gen > 0 || data.input_frames > 0);
    return true;
}

} // namespace volvelle
