#pragma once

#include "base/realtime/AudioSource.h"

#include <cstdint>

namespace volvelle {

// What flows through a connection: 32-bit floats, one buffer a channel. Everything here is stereo; the rates
// may differ.
struct AVAudioFormat {
    double sampleRate = AudioSource::sampleRate; // Hz
    std::uint32_t channelCount = 2;

    bool operator==(const AVAudioFormat&) const = default;
};

} // namespace volvelle
