#include "tests/services/synthesizer/Measuring.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <array>
#include <cmath>
#include <cstdio>
#include <string>

namespace volvelle::test {

namespace {

// The built-in bank against the SoundFont that it was made from, note by note.
class BankComparison : public testing::Test {
protected:
    struct Outcome {
        std::vector<double> levels;  // differences in dB
        std::vector<double> pitches; // differences in cents
        std::vector<double> shapes;  // greatest difference of the samples, in parts of the peak
        int unsteady = 0;
        std::string worst;
    };

    void SetUp() override
    {
        if (sourceBank().empty()) {
            GTEST_SKIP() << "TimGM6mb.sf2 is not installed";
        }
        made = drySynthesizer(builtInBank());
        original = drySynthesizer(sourceBank());
        ASSERT_TRUE(made && original);
    }

    void compare(const NoteToPlay& note)
    {
        const Stereo one = renderNote(*made, note);
        const Stereo other = renderNote(*original, note);
        const auto held = static_cast<std::size_t>(note.heldFrames);
        const double levelDifference = std::abs(level(one, 0, held) - level(other, 0, held));
        const double tailDifference = level(other, held, held) > -70.0
                                          ? std::abs(level(one, held, held) - level(other, held, held))
                                          : 0.0;
        outcome.levels.push_back(std::max(levelDifference, tailDifference));
        outcome.shapes.push_back(peak(other) > 0.0 ? difference(one, other) / peak(other) : peak(one));
        EXPECT_LT(outcome.levels.back(), 0.5) << name(note);
        comparePitch(note, one, other);
        if (outcome.shapes.back() > 0.05) {
            outcome.worst += " " + name(note);
        }
    }

    void report(const char* title) const
    {
        const auto greatest = [](const std::vector<double>& values) {
            return values.empty() ? 0.0 : *std::max_element(values.begin(), values.end());
        };
        std::printf("%s: %zu notes; level median %.3f max %.3f dB; pitch of %zu median %.3f max %.3f cents; "
                    "%d without a steady pitch; samples median %.2g max %.2g of the peak%s\n",
                    title, outcome.levels.size(), median(outcome.levels), greatest(outcome.levels),
                    outcome.pitches.size(), median(outcome.pitches), greatest(outcome.pitches),
                    outcome.unsteady, median(outcome.shapes), greatest(outcome.shapes),
                    outcome.worst.c_str());
    }

    std::unique_ptr<Synthesizer> made;
    std::unique_ptr<Synthesizer> original;
    Outcome outcome;

private:
    static std::string name(const NoteToPlay& note)
    {
        return std::to_string(note.program) + "/" + std::to_string(note.key);
    }

    void comparePitch(const NoteToPlay& note, const Stereo& one, const Stereo& other)
    {
        constexpr std::size_t start = 6000;
        constexpr std::size_t length = 12000;
        const double expected = frequencyOf(note.key);
        const auto before = pitch(other, start, length, expected);
        const auto now = pitch(one, start, length, expected);
        if (!before || !now) {
            outcome.unsteady += 1;
            EXPECT_EQ(before.has_value(), now.has_value()) << name(note);
            return;
        }
        outcome.pitches.push_back(std::abs(cents(*now, *before)));
        EXPECT_LT(outcome.pitches.back(), 2.0) << name(note);
    }
};

constexpr std::array sampledPrograms{0, 11, 19, 24, 33, 48, 52, 56, 73, 81, 89, 120};

} // namespace

TEST_F(BankComparison, SampledProgramsSoundAsInTheSource)
{
    for (const int program : sampledPrograms) {
        compare({.program = program, .key = 57});
    }
    report("sampled programs");
}

TEST_F(BankComparison, AllProgramsSoundAsInTheSource)
{
    for (int program = 0; program < 128; ++program) {
        for (const int key : {36, 60, 84}) {
            compare({.program = program, .key = key});
        }
    }
    EXPECT_LT(median(outcome.levels), 0.5);
    report("all programs");
}

TEST_F(BankComparison, AllDrumsSoundAsInTheSource)
{
    for (int key = 27; key <= 87; ++key) {
        compare({.channel = Synthesizer::drumChannel, .key = key});
    }
    report("drums");
}

TEST_F(BankComparison, SoftAndLoudNotesSoundAsInTheSource)
{
    for (const int velocity : {1, 40, 127}) {
        for (const int program : sampledPrograms) {
            compare({.program = program, .key = 60, .velocity = velocity, .heldFrames = 12000});
        }
    }
    report("velocities");
}

} // namespace volvelle::test
