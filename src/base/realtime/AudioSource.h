#pragma once

namespace volvelle {

// What renders sound when it is asked for it: always stereo at 48,000 Hz.
class AudioSource {
public:
    static constexpr double sampleRate = 48000.0; // Hz
    static constexpr int maximumFrames = 4096;    // of one call

    virtual ~AudioSource() = default;

    // Writes `frames` frames, 1 to maximumFrames, to both channels. [render]
    virtual void render(float* left, float* right, int frames) noexcept = 0;
};

} // namespace volvelle
