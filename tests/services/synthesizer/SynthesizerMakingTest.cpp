#include "services/synthesizer/Synthesizer.h"

#include "tests/services/synthesizer/Measuring.h"
#include "tests/services/synthesizer/TinyBank.h"
#include "tests/support/ConsoleCapture.h"

#include <gtest/gtest.h>

#include <cmath>

namespace volvelle::test {

TEST(SynthesizerMaking, SaysWhatIsWrongWithABank)
{
    ConsoleCapture console;
    const TemporaryFolder folder;
    const auto says = [](const std::filesystem::path& bank) { return Synthesizer::make(bank, {}).error(); };
    const auto absent = folder.path / "absent.sf2";
    EXPECT_EQ(says(absent), "The sound bank \"" + absent.string() + "\" cannot be read.");
    EXPECT_EQ(says(folder.path), "The sound bank \"" + folder.path.string() + "\" cannot be read.");
    const auto noise = folder.write("noise.dls", std::vector<std::uint8_t>(1000, 'R'));
    EXPECT_EQ(says(noise), "The sound bank \"" + noise.string() +
                               "\" is neither a SoundFont nor a bank of downloadable sounds.");
    const auto empty = folder.write("empty.sf2", "");
    EXPECT_NE(says(empty).find("is neither"), std::string::npos);
}

TEST(SynthesizerMaking, LogsABankThatCannotBeUsed)
{
    ConsoleCapture console;
    const TemporaryFolder folder;
    auto bytes = tinyBankBytes();
    bytes.resize(60);
    const auto cut = Synthesizer::make(folder.write("cut.dls", bytes), {});
    EXPECT_FALSE(cut);
    EXPECT_EQ(console.take(), std::vector{cut.error()});
    const std::vector<std::uint8_t> font{'R', 'I', 'F', 'F', 4, 0, 0, 0, 's', 'f', 'b', 'k'};
    const auto damaged = Synthesizer::make(folder.write("cut.sf2", font), {});
    EXPECT_FALSE(damaged);
    EXPECT_NE(damaged.error().find("is damaged"), std::string::npos);
}

TEST(SynthesizerMaking, PlaysATinyBankWithTheFrequencyOfItsWave)
{
    const TemporaryFolder folder;
    auto synthesizer = drySynthesizer(folder.write("tiny.dls", tinyBankBytes()));
    ASSERT_TRUE(synthesizer);
    for (const int key : {60, 72, 84}) {
        const Stereo sound = renderNote(*synthesizer, {.key = key});
        const double expected = 1000.0 * std::exp2((key - 84) / 12.0);
        const auto heard = pitch(sound, 6000, 12000, expected);
        ASSERT_TRUE(heard) << key;
        EXPECT_NEAR(cents(*heard, expected), 0.0, 1.0) << key;
    }
    EXPECT_FALSE(isSilent(renderNote(*synthesizer, {.channel = 9, .key = 38})));
}

TEST(SynthesizerMaking, TakesTheSoundFontItselfToo)
{
    if (sourceBank().empty()) {
        GTEST_SKIP() << "TimGM6mb.sf2 is not installed";
    }
    auto synthesizer = drySynthesizer(sourceBank());
    ASSERT_TRUE(synthesizer);
    EXPECT_EQ(synthesizer->bank->path, sourceBank());
    const auto heard = pitch(renderNote(*synthesizer, {.key = 69}), 6000, 12000, 440.0);
    ASSERT_TRUE(heard);
    EXPECT_NEAR(cents(*heard, 440.0), 0.0, 2.0);
}

} // namespace volvelle::test
