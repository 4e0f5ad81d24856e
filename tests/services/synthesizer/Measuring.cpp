#include "tests/services/synthesizer/Measuring.h"
#include "tests/support/ProjectFolders.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <cmath>

namespace volvelle::test {

namespace {

constexpr double steady = 0.9; // how alike a sound must be to itself one period later

std::vector<double> middle(const Stereo& sound, std::size_t start, std::size_t frames)
{
    std::vector<double> mixed;
    const std::size_t end = std::min(start + frames, sound.left.size());
    for (std::size_t i = start; i < end; ++i) {
        mixed.push_back(static_cast<double>(sound.left[i]) + static_cast<double>(sound.right[i]));
    }
    return mixed;
}

double likeness(const std::vector<double>& values, std::size_t lag)
{
    double product = 0.0;
    double one = 0.0;
    double other = 0.0;
    for (std::size_t i = 0; i + lag < values.size(); ++i) {
        product += values[i] * values[i + lag];
        one += values[i] * values[i];
        other += values[i + lag] * values[i + lag];
    }
    return one > 0.0 && other > 0.0 ? product / std::sqrt(one * other) : 0.0;
}

// Where the likeness is greatest between two lags, between frames too; none where it is not great or still
// rises.
std::optional<double> topBetween(const std::vector<double>& values, double from, double to)
{
    const auto low = static_cast<std::size_t>(std::max(2.0, from));
    const auto high = static_cast<std::size_t>(std::max(2.0, to));
    std::vector<double> found;
    for (std::size_t lag = low; lag <= high && lag * 2 < values.size(); ++lag) {
        found.push_back(likeness(values, lag));
    }
    const auto best = std::ranges::max_element(found);
    if (found.size() < 3 || best == found.begin() || best == found.end() - 1 || *best < steady) {
        return std::nullopt;
    }
    const double before = *(best - 1);
    const double after = *(best + 1);
    const double bend = before - 2.0 * *best + after;
    const double shift = bend < 0.0 ? 0.5 * (before - after) / bend : 0.0;
    return static_cast<double>(low) + static_cast<double>(best - found.begin()) + shift;
}

} // namespace

std::filesystem::path builtInBank()
{
    return buildFolder() / "resources/gs_instruments.dls";
}

std::filesystem::path sourceBank()
{
    for (const char* folder :
         {"/usr/share/sounds/sf2", "/usr/share/soundfonts", "/usr/local/share/soundfonts"}) {
        if (auto found = std::filesystem::path(folder) / "TimGM6mb.sf2"; std::filesystem::exists(found)) {
            return found;
        }
    }
    return {};
}

std::unique_ptr<Synthesizer> drySynthesizer(const std::filesystem::path& bank)
{
    SynthesizerOptions options;
    options.reverb = false;
    options.chorus = false;
    auto made = Synthesizer::make(bank, options);
    EXPECT_TRUE(made) << made.error();
    return *std::move(made);
}

Stereo renderFrames(Synthesizer& synthesizer, int frames, int block)
{
    Stereo sound;
    sound.left.resize(static_cast<std::size_t>(frames), 7.0F);
    sound.right.resize(static_cast<std::size_t>(frames), 7.0F);
    for (int done = 0; done < frames; done += block) {
        const int now = std::min(block, frames - done);
        synthesizer.render(sound.left.data() + done, sound.right.data() + done, now);
    }
    return sound;
}

Stereo renderNote(Synthesizer& synthesizer, const NoteToPlay& note)
{
    synthesizer.reset();
    synthesizer.program(note.channel, note.program);
    synthesizer.noteOn(note.channel, note.key, note.velocity);
    synthesizer.noteOff(note.channel, note.key, note.heldFrames);
    return renderFrames(synthesizer, note.heldFrames + note.releaseFrames, 4096);
}

double level(const Stereo& sound, std::size_t start, std::size_t frames)
{
    double sum = 0.0;
    std::size_t count = 0;
    for (std::size_t i = start; i < std::min(start + frames, sound.left.size()); ++i) {
        const double left = sound.left[i];
        const double right = sound.right[i];
        sum += left * left + right * right;
        count += 2;
    }
    return sum > 0.0 ? std::max(-200.0, 10.0 * std::log10(sum / static_cast<double>(count))) : -200.0;
}

double peak(const Stereo& sound)
{
    double greatest = 0.0;
    for (std::size_t i = 0; i < sound.left.size(); ++i) {
        greatest = std::max({greatest, static_cast<double>(std::abs(sound.left[i])),
                             static_cast<double>(std::abs(sound.right[i]))});
    }
    return greatest;
}

bool isSilent(const Stereo& sound)
{
    return peak(sound) == 0.0;
}

std::size_t firstSound(const Stereo& sound)
{
    std::size_t i = 0;
    while (i < sound.left.size() && sound.left[i] == 0.0F && sound.right[i] == 0.0F) {
        ++i;
    }
    return i;
}

double difference(const Stereo& one, const Stereo& other)
{
    EXPECT_EQ(one.left.size(), other.left.size());
    double greatest = 0.0;
    for (std::size_t i = 0; i < std::min(one.left.size(), other.left.size()); ++i) {
        greatest = std::max({greatest, static_cast<double>(std::abs(one.left[i] - other.left[i])),
                             static_cast<double>(std::abs(one.right[i] - other.right[i]))});
    }
    return greatest;
}

std::optional<double> pitch(const Stereo& sound, std::size_t start, std::size_t frames, double expected)
{
    const std::vector<double> values = middle(sound, start, frames);
    const double period = rate / expected;
    auto lag = topBetween(values, period * 0.94 - 1.0, period * 1.06 + 2.0);
    // Many periods later the same top stands more sharply.
    for (const double times : {4.0, 16.0}) {
        if (lag) {
            const double far = *lag * times;
            const double reach = std::max(3.0, period * 0.3);
            const auto sharper = topBetween(values, far - reach, far + reach);
            lag = sharper ? *sharper / times : lag;
        }
    }
    return lag ? std::optional(rate / *lag) : std::nullopt;
}

double frequencyOf(int key)
{
    return 440.0 * std::exp2((key - 69) / 12.0);
}

double cents(double one, double other)
{
    return 1200.0 * std::log2(one / other);
}

double median(std::vector<double> values)
{
    std::ranges::sort(values);
    return values.empty() ? 0.0 : values[values.size() / 2];
}

} // namespace volvelle::test
