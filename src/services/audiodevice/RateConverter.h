#pragma once

#include <memory>
#include <vector>

namespace volvelle {

// Converts the rate of a stereo stream that is pushed through it, block by block, in the best quality there
// is. As many frames come out as went in times the ratio, without delay. [any]
class RateConverter {
public:
    // `ratio`: the new rate by the old.
    explicit RateConverter(double ratio);
    ~RateConverter();
    RateConverter(const RateConverter&) = delete;
    RateConverter& operator=(const RateConverter&) = delete;

    // Appends to `result` what `interleaved` gives, at the end of the stream all that is still held back.
    // False where the conversion fails.
    bool convert(const std::vector<float>& interleaved, bool isEnd, std::vector<float>& result);

private:
    struct State;

    double ratio;
    std::unique_ptr<State> state;
};

} // namespace volvelle
