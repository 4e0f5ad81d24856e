#include "services/synthesizer/DLSReader.h"

#include "tests/services/synthesizer/Measuring.h"
#include "tests/services/synthesizer/TinyBank.h"
#include "tools/sf2dls/DLSWriter.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <chrono>
#include <fstream>
#include <iterator>

namespace volvelle::test {

namespace {

using Bytes = std::vector<std::uint8_t>;

struct Reading {
    std::optional<DLSFile> file;
    std::string error;

    bool says(const std::string& sentence) const
    {
        return error.find(sentence) != std::string::npos ||
               (file && std::ranges::find(file->warnings, sentence) != file->warnings.end());
    }

    bool hasMessage() const { return file ? !file->warnings.empty() : !error.empty(); }
};

Reading reading(const Bytes& bytes)
{
    Reading result;
    auto read = DLSReader(bytes).read();
    result.error = read.error();
    if (read) {
        result.file = *std::move(read);
    }
    return result;
}

// Reads the tiny bank with one 32-bit field, `after` bytes after the start of the chunk `id`, set to
// `value`.
Reading readingWith(const std::string& id, std::size_t behind, std::uint32_t value)
{
    Bytes bytes = tinyBankBytes();
    put32(bytes, placeOf(bytes, id) + behind, value);
    return reading(bytes);
}

constexpr std::uint32_t everything = 0xFFFFFFFF;

} // namespace

TEST(DLSReader, ReadsWhatWasWritten)
{
    const DLSFile written = tinyBank();
    const Reading read = reading(tinyBankBytes());
    ASSERT_TRUE(read.file) << read.error;
    EXPECT_TRUE(read.file->warnings.empty());
    ASSERT_EQ(read.file->instruments.size(), 2U);
    const DLSInstrument& sine = read.file->instruments[0];
    EXPECT_EQ(sine.name, "Sine");
    EXPECT_FALSE(sine.isDrums);
    ASSERT_EQ(sine.regions.size(), 1U);
    EXPECT_EQ(sine.regions[0].tuning, written.instruments[0].regions[0].tuning);
    EXPECT_EQ(read.file->articulations[static_cast<std::size_t>(sine.regions[0].articulation)],
              written.articulations[0]);
    ASSERT_EQ(read.file->waves.size(), 1U);
    EXPECT_EQ(read.file->waves[0].samples, written.waves[0].samples);
    EXPECT_EQ(read.file->waves[0].sampleRate, 48000U);
    EXPECT_EQ(read.file->waves[0].tuning, written.waves[0].tuning);
}

TEST(DLSReader, GivesARegionWithoutAnArticulationThatOfItsInstrument)
{
    const Reading read = reading(tinyBankBytes());
    ASSERT_TRUE(read.file);
    const DLSInstrument& kit = read.file->instruments[1];
    EXPECT_TRUE(kit.isDrums);
    EXPECT_EQ(kit.regions[0].keyGroup, 1);
    ASSERT_NE(kit.regions[0].articulation, DLSRegion::none);
    EXPECT_EQ(kit.regions[0].articulation, kit.articulation);
}

TEST(DLSReader, ReadsEightBitSamples)
{
    Bytes bytes = tinyBankBytes();
    const std::size_t format = placeOf(bytes, "fmt ");
    bytes[format + 22] = 8;
    const std::size_t data = placeOf(bytes, "data", format);
    bytes[data + 8] = 255;
    bytes[data + 9] = 0;
    const Reading read = reading(bytes);
    ASSERT_TRUE(read.file) << read.error;
    EXPECT_EQ(read.file->waves[0].samples.size(), 960U);
    EXPECT_EQ(read.file->waves[0].samples[0], 127 * 256);
    EXPECT_EQ(read.file->waves[0].samples[1], -128 * 256);
}

TEST(DLSReader, RefusesWhatIsNoBank)
{
    EXPECT_EQ(reading({}).error, "The file is no bank of downloadable sounds.");
    EXPECT_EQ(reading(Bytes(100, 0xFF)).error, "The file is no bank of downloadable sounds.");
    EXPECT_EQ(reading({'R', 'I', 'F', 'F', 4, 0, 0, 0, 'D', 'L', 'S', ' '}).error,
              "The bank holds no instrument with a sound.");
}

TEST(DLSReader, SaysWhatIsWrongWhereverTheFileIsCut)
{
    const Bytes whole = tinyBankBytes();
    for (std::size_t part = 1; part < 64; ++part) {
        Bytes cut(whole.begin(), whole.begin() + static_cast<std::ptrdiff_t>(whole.size() * part / 64));
        EXPECT_TRUE(reading(cut).hasMessage()) << part;
    }
}

TEST(DLSReader, CapsEveryCountByTheBytesThatAreThere)
{
    EXPECT_TRUE(readingWith("colh", 8, everything)
                    .says("The header counts another number of instruments than there are."));
    EXPECT_TRUE(readingWith("insh", 8, everything)
                    .says("An instrument counts another number of regions than it has."));
    EXPECT_TRUE(
        readingWith("ptbl", 12, everything).says("The table of waves counts more entries than there are."));
    EXPECT_TRUE(
        readingWith("art2", 12, everything).says("An articulation counts more connections than there are."));
    EXPECT_TRUE(readingWith("wsmp", 24, everything).says("A tuning counts more loops than there are."));
}

TEST(DLSReader, RefusesSizesThatDoNotFit)
{
    EXPECT_TRUE(readingWith("ptbl", 8, everything).says("The table of waves has a wrong size."));
    EXPECT_TRUE(readingWith("art2", 8, everything).says("An articulation has a wrong size."));
    EXPECT_TRUE(readingWith("wsmp", 8, everything).says("A tuning has a wrong size."));
    EXPECT_TRUE(readingWith("wsmp", 8, 0).says("A tuning has a wrong size."));
    EXPECT_TRUE(readingWith("rgnh", 4, 2).hasMessage());
}

TEST(DLSReader, SaysThatAChunkIsTooLarge)
{
    for (const char* id : {"RIFF", "lins", "ins ", "lrgn", "rgn2", "lar2", "wvpl", "wave"}) {
        Bytes bytes = tinyBankBytes();
        const std::size_t at = placeOf(bytes, id);
        put32(bytes, std::string(id) == "RIFF" ? 4 : at - 4, everything);
        EXPECT_TRUE(reading(bytes).says("A chunk promises more bytes than there are.")) << id;
    }
    for (const char* id : {"colh", "insh", "rgnh", "wsmp", "wlnk", "art2", "ptbl", "fmt ", "data"}) {
        EXPECT_TRUE(readingWith(id, 4, everything).says("A chunk promises more bytes than there are.")) << id;
    }
}

TEST(DLSReader, MendsALoopOutsideItsWave)
{
    const Reading late = readingWith("wsmp", 36, 1000);
    EXPECT_TRUE(late.says("A loop lies outside its wave."));
    EXPECT_FALSE(late.file->instruments[0].regions[0].tuning->loop);
    const Reading longLoop = readingWith("wsmp", 40, everything);
    EXPECT_TRUE(longLoop.says("A loop lies outside its wave."));
    EXPECT_EQ(longLoop.file->instruments[0].regions[0].tuning->loop->length, 480U - 96U);
}

TEST(DLSReader, DropsARegionWhoseWaveIsNotThere)
{
    for (const std::uint32_t wave : {1U, 0x7FFFFFFFU, everything}) {
        const Reading read = readingWith("wlnk", 16, wave);
        EXPECT_TRUE(read.says("A region names a wave that is not there."));
        EXPECT_TRUE(read.file->instruments[0].regions.empty());
    }
    EXPECT_TRUE(readingWith("ptbl", 16, 4).says("A region names a wave that is not there."));
}

TEST(DLSReader, DropsWavesOfUnknownFormats)
{
    for (const std::uint32_t format : {0x00010006U, 0x00030001U, 0x00000001U}) {
        EXPECT_TRUE(readingWith("fmt ", 8, format).says("A wave has a format that cannot be played."));
    }
    EXPECT_TRUE(readingWith("fmt ", 12, 0).says("A wave has a format that cannot be played."));
    EXPECT_TRUE(readingWith("fmt ", 12, everything).says("A wave has a format that cannot be played."));
}

TEST(DLSReader, LeavesALaterPoolAside)
{
    Bytes bytes = tinyBankBytes();
    const std::size_t pool = placeOf(bytes, "wvpl") - 8;
    const Bytes again(bytes.begin() + static_cast<std::ptrdiff_t>(pool), bytes.end());
    bytes.insert(bytes.end(), again.begin(), again.end());
    put32(bytes, 4, static_cast<std::uint32_t>(bytes.size() - 8));
    EXPECT_TRUE(reading(bytes).says("The file has more than one pool of waves."));
}

TEST(DLSReader, CapsTheConnectionsOfAnArticulation)
{
    DLSFile bank = tinyBank();
    bank.articulations[0].resize(3000);
    EXPECT_TRUE(reading(writeDLS(bank, "")).says("An articulation has too many connections."));
}

TEST(DLSReader, WalksDeeplyNestedListsInNoTime)
{
    Bytes bytes = tinyBankBytes();
    Bytes nested;
    for (std::uint32_t left = 20000; left > 0; --left) {
        const Bytes head{'L', 'I', 'S', 'T', 0, 0, 0, 0, 'r', 'g', 'n', '2'};
        nested.insert(nested.end(), head.begin(), head.end());
        put32(nested, nested.size() - 8, left * 12 - 8);
    }
    const std::size_t at = placeOf(bytes, "lrgn") + 4;
    bytes.insert(bytes.begin() + static_cast<std::ptrdiff_t>(at), nested.begin(), nested.end());
    const auto before = std::chrono::steady_clock::now();
    EXPECT_TRUE(reading(bytes).hasMessage());
    EXPECT_LT(std::chrono::steady_clock::now() - before, std::chrono::seconds(1));
}

TEST(DLSReader, ReadsTheBuiltInBankWithoutAWarning)
{
    std::ifstream stream(builtInBank(), std::ios::binary);
    if (!stream) {
        GTEST_SKIP() << "the built-in bank was not made";
    }
    const std::vector<char> text{std::istreambuf_iterator<char>(stream), {}};
    const Reading read = reading(Bytes(text.begin(), text.end()));
    ASSERT_TRUE(read.file) << read.error;
    EXPECT_TRUE(read.file->warnings.empty()) << read.file->warnings.front();
    EXPECT_EQ(read.file->instruments.size(), 136U);
    EXPECT_EQ(std::ranges::count(read.file->instruments, true, &DLSInstrument::isDrums), 8);
}

} // namespace volvelle::test
