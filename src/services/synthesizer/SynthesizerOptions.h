#pragma once

#include "base/realtime/AudioSource.h"

namespace volvelle {

struct SynthesizerOptions {
    // Makes a dense arrangement (twelve channels, drums among them, all striking chords in eighths at
    // velocity 105) peak near -6 dBFS in front of the limiter.
    static constexpr double defaultGain = 0.2;

    double sampleRate = AudioSource::sampleRate; // Hz, 8,000 to 96,000
    int polyphony = 256;                         // voices
    double gain = defaultGain;                   // 0 to 10
    bool reverb = true;
    bool chorus = true;
    // Nothing is computed from a second after the last tail to the next message. The effects then go on where
    // they were, so that what follows is not sample for sample what it would have been.
    bool rests = false;
};

} // namespace volvelle
