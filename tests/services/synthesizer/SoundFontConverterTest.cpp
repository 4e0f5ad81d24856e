#include "tools/sf2dls/SoundFontConverter.h"

#include "services/synthesizer/DLSReader.h"
#include "tests/services/synthesizer/Measuring.h"
#include "tests/services/synthesizer/TinyBank.h"
#include "tools/sf2dls/DLSWriter.h"

#include <gtest/gtest.h>

#include <chrono>
#include <fstream>
#include <iterator>
#include <random>

namespace volvelle::test {

namespace {

class SoundFontConverterTest : public testing::Test {
protected:
    void SetUp() override
    {
        std::ifstream stream(sourceBank(), std::ios::binary);
        if (!stream) {
            GTEST_SKIP() << "TimGM6mb.sf2 is not installed";
        }
        const std::vector<char> text{std::istreambuf_iterator<char>(stream), {}};
        bytes.assign(text.begin(), text.end());
    }

    Result<DLSFile> converted(const std::vector<std::uint8_t>& from)
    {
        const auto file = SoundFontFile::read(from);
        return file ? SoundFontConverter(*file).convert() : failure(file.error());
    }

    std::vector<std::uint8_t> bytes;
};

} // namespace

TEST_F(SoundFontConverterTest, KeepsRootTuningAndLoopOfEveryVoice)
{
    const auto source = SoundFontFile::read(bytes);
    const auto bank = converted(bytes);
    ASSERT_TRUE(source && bank) << bank.error();
    ASSERT_EQ(bank->instruments.size(), source->presets.size());
    for (std::size_t i = 0; i < bank->instruments.size(); ++i) {
        const auto voices = voicesOf(*source, source->presets[i], 100000);
        ASSERT_EQ(voices.size(), bank->instruments[i].regions.size());
        for (std::size_t k = 0; k < voices.size(); ++k) {
            const DLSTuning& tuning = bank->instruments[i].regions[k].tuning.value();
            const SoundFontSample& sample = source->samples[voices[k].sample];
            const double root = voices[k][Generator::rootKey];
            EXPECT_EQ(tuning.unityNote, root >= 0 ? root : sample.key);
            EXPECT_NEAR(tuning.fineTune,
                        100 * voices[k][Generator::coarseTune] + voices[k][Generator::fineTune] +
                            sample.correction * voices[k][Generator::scaleTuning] / 100,
                        0.5);
            EXPECT_EQ(tuning.loop.has_value(), voices[k][Generator::sampleModes] != 0.0);
            if (tuning.loop) {
                EXPECT_EQ(tuning.loop->start,
                          sample.loopStart - sample.start + voices[k][Generator::loopStartOffset]);
                EXPECT_EQ(tuning.loop->start + tuning.loop->length,
                          sample.loopEnd - sample.start + voices[k][Generator::loopEndOffset]);
            }
        }
    }
}

TEST_F(SoundFontConverterTest, WritesWhatTheReaderReads)
{
    const auto bank = converted(bytes);
    ASSERT_TRUE(bank);
    const auto written = writeDLS(*bank, "Bank");
    const auto read = DLSReader(written).read();
    ASSERT_TRUE(read) << read.error();
    EXPECT_TRUE(read->warnings.empty());
    ASSERT_EQ(read->instruments.size(), bank->instruments.size());
    EXPECT_EQ(read->articulations, bank->articulations);
    for (std::size_t i = 0; i < bank->instruments.size(); ++i) {
        EXPECT_EQ(read->instruments[i].name, bank->instruments[i].name);
        EXPECT_EQ(read->instruments[i].isDrums, bank->instruments[i].isDrums);
        EXPECT_EQ(read->instruments[i].regions.size(), bank->instruments[i].regions.size());
    }
}

TEST_F(SoundFontConverterTest, RefusesWhatIsNoSoundFont)
{
    EXPECT_EQ(converted({}).error(), "The file is no SoundFont.");
    EXPECT_FALSE(converted(tinyBankBytes()));
    EXPECT_EQ(converted({bytes.begin(), bytes.begin() + 4000000}).error(),
              "The SoundFont is damaged or has no sounds.");
}

TEST_F(SoundFontConverterTest, EndsSoonWhateverTheTablesSay)
{
    std::mt19937 random(99);
    const std::size_t tables = placeOf(bytes, "phdr");
    const auto before = std::chrono::steady_clock::now();
    for (int i = 0; i < 20; ++i) {
        auto damaged = bytes;
        for (int k = 0; k < 200; ++k) {
            damaged[tables + random() % (damaged.size() - tables)] = static_cast<std::uint8_t>(random());
        }
        const auto bank = converted(damaged);
        EXPECT_TRUE(bank || !bank.error().empty());
    }
    EXPECT_LT(std::chrono::steady_clock::now() - before, std::chrono::seconds(60));
}

} // namespace volvelle::test
