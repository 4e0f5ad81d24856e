#include "tests/services/synthesizer/TinyBank.h"

#include "tools/sf2dls/DLSWriter.h"

#include <algorithm>
#include <cmath>
#include <cstdlib>
#include <fstream>
#include <numbers>
#include <system_error>

namespace volvelle::test {

DLSFile tinyBank()
{
    DLSFile bank;
    DLSWave wave;
    wave.sampleRate = 48000;
    for (int i = 0; i < 480; ++i) {
        wave.samples.push_back(
            static_cast<std::int16_t>(std::lround(16000 * std::sin(i * std::numbers::pi / 24))));
    }
    wave.tuning = DLSTuning{84, 0, 0, DLSLoop{false, 48, 384}};
    bank.waves.push_back(wave);
    bank.articulations.push_back(
        {{DLSSource::none, DLSSource::none, DLSDestination::volumeRelease, 0, -2400 * 65536},
         {DLSSource::lfo, DLSSource::controller1, DLSDestination::pitch, 0, 50 * 65536}});
    DLSRegion region;
    region.wave = 0;
    region.articulation = 0;
    region.tuning = DLSTuning{84, 0, 0, DLSLoop{false, 96, 192}};
    bank.instruments.push_back({"Sine", false, 0, 0, DLSRegion::none, {region}});
    region.keyGroup = 1;
    bank.instruments.push_back({"Kit", true, 0, 0, 0, {region}});
    bank.instruments.back().regions.front().articulation = DLSRegion::none;
    return bank;
}

std::vector<std::uint8_t> tinyBankBytes()
{
    return writeDLS(tinyBank(), "Tiny");
}

std::size_t placeOf(const std::vector<std::uint8_t>& bytes, const std::string& id, std::size_t from)
{
    const auto start = bytes.begin() + static_cast<std::ptrdiff_t>(from);
    return static_cast<std::size_t>(std::search(start, bytes.end(), id.begin(), id.end()) - bytes.begin());
}

void put32(std::vector<std::uint8_t>& bytes, std::size_t at, std::uint32_t value)
{
    for (std::size_t i = 0; i < 4; ++i) {
        bytes.at(at + i) = static_cast<std::uint8_t>(value >> (8U * i));
    }
}

} // namespace volvelle::test
