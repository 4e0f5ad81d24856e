#pragma once

#include "services/audiograph/graph/AVAudioUnitMIDIInstrument.h"

#include <cstdint>
#include <string>
#include <vector>

namespace volvelle::test {

// Keeps what it is sent, with the frame of its own clock, and sounds silence.
class RecordingUnit : public AUAudioUnit {
public:
    explicit RecordingUnit(double rate = 48000.0);

    // "24000: 90 3C 64" for each message since the last take.
    std::vector<std::string> take();

    // Frames it has rendered.
    using AUAudioUnit::renderedFrames;

    // Notes that were begun and not ended.
    int sounding() const;

    void prepareToPlay(std::span<const AUMIDIProgram> programs) override;

    void reset() noexcept override { ++resets; }

    std::vector<AUMIDIProgram> prepared;
    int resets = 0;

protected:
    void renderBlock(const float* inputLeft, const float* inputRight, float* left, float* right, int frames,
                     std::span<const TimedMessage> events) noexcept override;

private:
    struct Heard {
        std::int64_t frame = 0;
        std::size_t begin = 0;
        std::size_t length = 0;
    };

    std::vector<Heard> heard;
    std::vector<std::uint8_t> bytes;
    std::vector<int> notes; // by 128 * channel + key
};

// A sine of one frequency at a rate of its own.
class SineUnit : public AUAudioUnit {
public:
    SineUnit(double frequency, double amplitude, double rate = 48000.0);

protected:
    void renderBlock(const float* inputLeft, const float* inputRight, float* left, float* right, int frames,
                     std::span<const TimedMessage> events) noexcept override;

private:
    double step;
    double amplitude;
};

// Counts frames on the left, from 0 to the highest and again from 0, and gives one constant on the right.
class CountingUnit : public AUAudioUnit {
public:
    static constexpr float highest = 16777215.0F;

    explicit CountingUnit(float constant = 0.0F);

protected:
    void renderBlock(const float* inputLeft, const float* inputRight, float* left, float* right, int frames,
                     std::span<const TimedMessage> events) noexcept override;

private:
    float constant;
};

// Doubles its input, at a rate of its own.
class DoublingUnit : public AUAudioUnit {
public:
    explicit DoublingUnit(double rate = 48000.0);

protected:
    void renderBlock(const float* inputLeft, const float* inputRight, float* left, float* right, int frames,
                     std::span<const TimedMessage> events) noexcept override;
};

// A node of a new unit.
template <typename Unit, typename... Arguments>
std::shared_ptr<AVAudioUnit> nodeOf(Arguments... arguments)
{
    return std::make_shared<AVAudioUnitMIDIInstrument>(std::make_shared<Unit>(arguments...));
}

} // namespace volvelle::test
