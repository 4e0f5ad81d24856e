#include "tests/services/audiograph/TestUnits.h"

#include "base/Text.h"

#include <algorithm>
#include <cmath>
#include <numbers>
#include <numeric>

namespace volvelle::test {

RecordingUnit::RecordingUnit(double rate) : AUAudioUnit(synthesizerComponent), notes(16 * 128)
{
    outputBusses.push_back({{rate, 2}, "out", true});
    takesMIDI = true;
    heard.reserve(1U << 18);
    bytes.reserve(1U << 20);
}

std::vector<std::string> RecordingUnit::take()
{
    std::vector<std::string> lines;
    for (const Heard& message : heard) {
        std::string line = std::to_string(message.frame) + ":";
        for (std::size_t i = 0; i < message.length; ++i) {
            const std::string digits = hexadecimal(bytes[message.begin + i], '0');
            line += " " + digits;
        }
        lines.push_back(line);
    }
    heard.clear();
    bytes.clear();
    return lines;
}

int RecordingUnit::sounding() const
{
    return std::accumulate(notes.begin(), notes.end(), 0);
}

void RecordingUnit::prepareToPlay(std::span<const AUMIDIProgram> programs)
{
    prepared.assign(programs.begin(), programs.end());
}

void RecordingUnit::renderBlock(const float*, const float*, float* left, float* right, int frames,
                                std::span<const TimedMessage> events) noexcept
{
    std::fill_n(left, frames, 0.0F);
    std::fill_n(right, frames, 0.0F);
    for (const TimedMessage& event : events) {
        const std::span<const std::uint8_t> message = event.bytes();
        const int kind = kindOf(message[0]);
        if (kind == STATUS_NOTEOFF || kind == STATUS_NOTEON) {
            int& count = notes[static_cast<std::size_t>(channelOf(message[0]) * 128 + message[1])];
            count = std::max(0, count + (kind == STATUS_NOTEON ? 1 : -1));
        }
        if (heard.size() < heard.capacity() && bytes.size() + message.size() <= bytes.capacity()) {
            heard.push_back({renderedFrames() + event.offset, bytes.size(), message.size()});
            bytes.insert(bytes.end(), message.begin(), message.end());
        }
    }
}

SineUnit::SineUnit(double frequency, double newAmplitude, double rate)
    : AUAudioUnit(synthesizerComponent),
      step(2.0 * std::numbers::pi * frequency / rate),
      amplitude(newAmplitude)
{
    outputBusses.push_back({{rate, 2}, "out", true});
}

void SineUnit::renderBlock(const float*, const float*, float* left, float* right, int frames,
                           std::span<const TimedMessage>) noexcept
{
    for (int i = 0; i < frames; ++i) {
        const double phase = step * static_cast<double>(renderedFrames() + i);
        left[i] = static_cast<float>(amplitude * std::sin(phase));
        right[i] = static_cast<float>(amplitude * std::cos(phase));
    }
}

CountingUnit::CountingUnit(float newConstant) : AUAudioUnit(synthesizerComponent), constant(newConstant)
{
    outputBusses.resize(1);
}

void CountingUnit::renderBlock(const float*, const float*, float* left, float* right, int frames,
                               std::span<const TimedMessage>) noexcept
{
    for (int i = 0; i < frames; ++i) {
        left[i] = static_cast<float>((renderedFrames() + i) % (1 << 24));
        right[i] = constant;
    }
}

DoublingUnit::DoublingUnit(double rate) : AUAudioUnit(limiterComponent)
{
    inputBusses.push_back({{rate, 2}, "in", true});
    outputBusses.push_back({{rate, 2}, "out", true});
}

void DoublingUnit::renderBlock(const float* inputLeft, const float* inputRight, float* left, float* right,
                               int frames, std::span<const TimedMessage>) noexcept
{
    for (int i = 0; i < frames; ++i) {
        left[i] = 2.0F * inputLeft[i];
        right[i] = 2.0F * inputRight[i];
    }
}

} // namespace volvelle::test
