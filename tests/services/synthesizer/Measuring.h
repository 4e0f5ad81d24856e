#pragma once

#include "services/synthesizer/Synthesizer.h"

#include <filesystem>
#include <memory>
#include <optional>
#include <vector>

namespace volvelle::test {

struct Stereo {
    std::vector<float> left;
    std::vector<float> right;
};

struct NoteToPlay {
    int channel = 0;
    int program = 0;
    int key = 60;
    int velocity = 100;
    int heldFrames = 24000;
    int releaseFrames = 12032; // all of it a multiple of 64, so that the next note starts alike
};

inline constexpr double rate = 48000.0; // Hz

// The bank made by the build, and the SoundFont it was made from.
std::filesystem::path builtInBank();
std::filesystem::path sourceBank();

// A synthesizer without reverb and chorus; a failure fails the test.
std::unique_ptr<Synthesizer> drySynthesizer(const std::filesystem::path& bank);

// The next frames, in blocks.
Stereo renderFrames(Synthesizer& synthesizer, int frames, int block = 512);

// Starts from a reset, plays one note and gives all of it.
Stereo renderNote(Synthesizer& synthesizer, const NoteToPlay& note);

// Root of the mean square of both channels, in dBFS; at most `frames` from `start`. -200 for silence.
double level(const Stereo& sound, std::size_t start, std::size_t frames);
double peak(const Stereo& sound);
bool isSilent(const Stereo& sound);
std::size_t firstSound(const Stereo& sound);

// The greatest difference of two sounds of one length.
double difference(const Stereo& one, const Stereo& other);

// The frequency in Hz by autocorrelation, near `expected`; none where the sound has no steady pitch there.
std::optional<double> pitch(const Stereo& sound, std::size_t start, std::size_t frames, double expected);
double frequencyOf(int key);
double cents(double one, double other);
double median(std::vector<double> values);

} // namespace volvelle::test
