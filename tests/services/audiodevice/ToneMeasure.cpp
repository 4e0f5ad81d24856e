#include "tests/services/audiodevice/ToneMeasure.h"

#include "tests/services/audiodevice/SineSource.h"

#include <algorithm>
#include <cmath>
#include <fstream>
#include <iterator>
#include <numbers>
#include <vector>

namespace volvelle::test {

namespace {

constexpr std::size_t longest = 48'000; // frames
constexpr std::size_t leadIn = 4'800;   // frames after the first that sounds

// The left channel, from a tenth of a second after its first sound on.
std::vector<double> soundOf(const std::filesystem::path& recording)
{
    std::ifstream file(recording, std::ios::binary);
    std::vector<double> left;
    float frame[2] = {};
    std::size_t behindStart = 0;
    while (left.size() < longest && file.read(reinterpret_cast<char*>(frame), sizeof(frame))) {
        behindStart += behindStart > 0 || frame[0] != 0.0F ? 1 : 0;
        if (behindStart > leadIn) {
            left.push_back(static_cast<double>(frame[0]));
        }
    }
    return left;
}

double frequencyOf(const std::vector<double>& samples)
{
    std::vector<double> rises; // frames
    for (std::size_t i = 1; i < samples.size(); ++i) {
        if (samples[i - 1] < 0.0 && samples[i] >= 0.0) {
            rises.push_back(static_cast<double>(i) - samples[i] / (samples[i] - samples[i - 1]));
        }
    }
    const double waves = static_cast<double>(rises.size()) - 1.0;
    return rises.size() < 2 ? 0.0 : waves * AudioSource::sampleRate / (rises.back() - rises.front());
}

} // namespace

ToneMeasure ToneMeasure::of(const std::filesystem::path& recording)
{
    const std::vector<double> samples = soundOf(recording);
    const double step = 2.0 * std::numbers::pi * SineSource::frequency / AudioSource::sampleRate;
    ToneMeasure measure;
    measure.frames = static_cast<int>(samples.size());
    measure.frequency = frequencyOf(samples);
    for (std::size_t i = 2; i < samples.size(); ++i) {
        const double foretold = 2.0 * std::cos(step) * samples[i - 1] - samples[i - 2];
        measure.discontinuity = std::max(measure.discontinuity, std::abs(samples[i] - foretold));
        measure.amplitude = std::max(measure.amplitude, std::abs(samples[i]));
    }
    return measure;
}

} // namespace volvelle::test
