#pragma once

#include <filesystem>

namespace volvelle::test {

// What the first sounding second of a recording holds, stereo 32-bit floats at 48,000 Hz without a header.
struct ToneMeasure {
    int frames = 0;         // that were measured
    double frequency = 0.0; // Hz, from the first rise through zero to the last
    double amplitude = 0.0;
    double discontinuity = 0.0; // the greatest distance of a sample from what its two forerunners foretell

    static ToneMeasure of(const std::filesystem::path& recording);
};

} // namespace volvelle::test
