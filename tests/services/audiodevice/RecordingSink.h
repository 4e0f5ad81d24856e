#pragma once

#include "base/realtime/AudioSink.h"

#include <algorithm>
#include <vector>

namespace volvelle::test {

// A sink without a pace: a test pulls by hand, and everything is kept.
class RecordingSink : public AudioSink {
public:
    Result<> open(AudioSource& given) override
    {
        source = &given;
        return {};
    }

    void close() override { source = nullptr; }

    std::string description() const override { return "Recording"; }

    bool isAudible() const override { return true; }

    // Pulls `frames` frames in blocks of at most `block`.
    void pull(int frames, int block = 512)
    {
        while (source != nullptr && frames > 0) {
            const int count = std::min(frames, block);
            const std::size_t filled = left.size();
            left.resize(filled + static_cast<std::size_t>(count));
            right.resize(filled + static_cast<std::size_t>(count));
            source->render(left.data() + filled, right.data() + filled, count);
            frames -= count;
        }
    }

    std::vector<float> left;
    std::vector<float> right;

private:
    AudioSource* source = nullptr;
};

} // namespace volvelle::test
