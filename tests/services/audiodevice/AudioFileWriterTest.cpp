#include "services/audiodevice/AudioFileWriter.h"
#include "base/PendingFiles.h"
#include "base/realtime/AudioSink.h"
#include "tests/support/TemporaryFolder.h"

#include <algorithm>
#include <cmath>
#include <csignal>
#include <filesystem>
#include <fstream>
#include <gtest/gtest.h>
#include <iterator>
#include <numbers>
#include <sndfile.h>
#include <sys/resource.h>
#include <sys/stat.h>
#include <unistd.h>
#include <vector>

namespace volvelle::test {

namespace {

// 440 Hz, at half of full scale on the left and a quarter on the right.
class Tone : public AudioSource {
public:
    void render(float* left, float* right, int frames) noexcept override
    {
        for (int i = 0; i < frames; ++i) {
            const double wave = std::sin(2.0 * std::numbers::pi * 440.0 * (frame++) / sampleRate);
            left[i] = static_cast<float>(gain * wave);
            right[i] = left[i] / 2.0F;
        }
    }

    double gain = 0.5;

private:
    double frame = 0.0;
};

struct ReadFile {
    SF_INFO information = {};
    std::vector<float> samples;

    float peak(std::size_t channel) const
    {
        float greatest = 0.0F;
        for (std::size_t i = channel; i < samples.size(); i += 2) {
            greatest = std::max(greatest, std::abs(samples[i]));
        }
        return greatest;
    }

    // Rising zero crossings of the left channel.
    int waves() const
    {
        int count = 0;
        for (std::size_t i = 2; i < samples.size(); i += 2) {
            count += samples[i - 2] < 0.0F && samples[i] >= 0.0F ? 1 : 0;
        }
        return count;
    }
};

ReadFile readBack(const std::filesystem::path& path)
{
    ReadFile result;
    SNDFILE* file = sf_open(path.c_str(), SFM_READ, &result.information);
    EXPECT_NE(file, nullptr) << sf_strerror(nullptr);
    if (file != nullptr) {
        result.samples.resize(2 * static_cast<std::size_t>(result.information.frames));
        EXPECT_EQ(sf_readf_float(file, result.samples.data(), result.information.frames),
                  result.information.frames);
        sf_close(file);
    }
    return result;
}

// Appends what a source renders, in blocks of 512 frames and a shorter last one.
Result<> pull(AudioFileWriter& writer, AudioSource& source, int frames)
{
    std::vector<float> left(512);
    std::vector<float> right(512);
    Result<> written;
    for (int done = 0; written && done < frames; done += 512) {
        const int count = std::min(512, frames - done);
        source.render(left.data(), right.data(), count);
        written = writer.write(left.data(), right.data(), count);
    }
    return written;
}

class AudioFileWriterTest : public testing::Test {
protected:
    void writeTone(const std::string& name, int frames, const AudioFileWriter::Options& options)
    {
        ASSERT_EQ(writer.open(folder / name, options).error(), "");
        ASSERT_EQ(pull(writer, tone, frames).error(), "");
        EXPECT_EQ(writer.length(), frames);
        ASSERT_EQ(writer.finish().error(), "");
    }

    void expectTone(const std::string& name, int rate, int frames, int format, double tolerance)
    {
        const ReadFile file = readBack(folder / name);
        EXPECT_EQ(file.information.samplerate, rate);
        EXPECT_EQ(file.information.channels, 2);
        EXPECT_EQ(file.information.frames, frames);
        EXPECT_EQ(file.information.format, format);
        EXPECT_NEAR(file.peak(0), 0.5, tolerance);
        EXPECT_NEAR(file.peak(1), 0.25, tolerance);
        EXPECT_NEAR(file.waves(), 440.0 * frames / rate, 2.0);
    }

    std::size_t filesInFolder() const
    {
        return static_cast<std::size_t>(std::distance(std::filesystem::directory_iterator(folder), {}));
    }

    void putFile(const std::string& name, const std::string& text) { std::ofstream(folder / name) << text; }

    std::string textOf(const std::string& name) const
    {
        std::ifstream file(folder / name);
        return {std::istreambuf_iterator<char>(file), {}};
    }

    TemporaryFolder temporary;
    std::filesystem::path folder = temporary.path;
    Tone tone;
    AudioFileWriter writer;
};

} // namespace

TEST_F(AudioFileWriterTest, WritesWAVOf24Bits)
{
    writeTone("a.wav", 48'100, {});
    expectTone("a.wav", 48'000, 48'100, SF_FORMAT_WAV | SF_FORMAT_PCM_24, 1e-4);
    EXPECT_EQ(filesInFolder(), 1U);
    EXPECT_EQ(std::filesystem::file_size(folder / "a.wav") / 6, 48'100U + 44 / 6);
}

TEST_F(AudioFileWriterTest, ClipsWhatExceedsFullScale)
{
    tone.gain = 3.0;
    writeTone("a.wav", 4800, {});
    const ReadFile file = readBack(folder / "a.wav");
    EXPECT_NEAR(file.peak(0), 1.0, 1e-4);
    EXPECT_NEAR(file.waves(), 44, 1);
}

TEST_F(AudioFileWriterTest, WritesFLAC)
{
    writeTone("a.flac", 96'001, {});
    expectTone("a.flac", 48'000, 96'001, SF_FORMAT_FLAC | SF_FORMAT_PCM_24, 1e-4);
}

TEST_F(AudioFileWriterTest, WritesOGG)
{
    writeTone("a.ogg", 96'001, {});
    expectTone("a.ogg", 48'000, 96'001, SF_FORMAT_OGG | SF_FORMAT_VORBIS, 0.02);
}

TEST_F(AudioFileWriterTest, ConvertsToTheRateAskedFor)
{
    writeTone("a.wav", 96'000, {44'100});
    expectTone("a.wav", 44'100, 88'200, SF_FORMAT_WAV | SF_FORMAT_PCM_24, 0.02);
    tone = Tone();
    writeTone("b.flac", 96'000, {96'000});
    expectTone("b.flac", 96'000, 192'000, SF_FORMAT_FLAC | SF_FORMAT_PCM_24, 0.02);
}

TEST_F(AudioFileWriterTest, GivesTheSameBytesForTheSameSound)
{
    writeTone("a.wav", 5000, {44'100});
    tone = Tone();
    writeTone("b.wav", 5000, {44'100});
    EXPECT_EQ(textOf("a.wav"), textOf("b.wav"));
}

TEST_F(AudioFileWriterTest, WritesAFileWithoutFrames)
{
    for (const std::string name : {"a.wav", "a.flac", "a.ogg"}) {
        writeTone(name, 0, {});
        EXPECT_EQ(filesInFolder(), 1U);
        std::filesystem::remove(folder / name);
    }
}

TEST_F(AudioFileWriterTest, LeavesAnExistingFileUntouchedUntilItIsFinished)
{
    putFile("a.wav", "before");
    chmod((folder / "a.wav").c_str(), 0640);
    ASSERT_EQ(writer.open(folder / "a.wav", {}).error(), "");
    ASSERT_EQ(pull(writer, tone, 100'000).error(), "");
    EXPECT_EQ(textOf("a.wav"), "before");
    ASSERT_EQ(writer.finish().error(), "");
    expectTone("a.wav", 48'000, 100'000, SF_FORMAT_WAV | SF_FORMAT_PCM_24, 1e-4);
    EXPECT_EQ(std::filesystem::status(folder / "a.wav").permissions(), std::filesystem::perms(0640));
}

TEST_F(AudioFileWriterTest, WritesThroughALink)
{
    putFile("real.wav", "before");
    std::filesystem::create_symlink("real.wav", folder / "link.wav");
    writeTone("link.wav", 100, {});
    EXPECT_TRUE(std::filesystem::is_symlink(folder / "link.wav"));
    EXPECT_EQ(readBack(folder / "real.wav").information.frames, 100);
}

TEST_F(AudioFileWriterTest, LeavesNothingBehindWhereItIsDropped)
{
    for (const std::string name : {"a.wav", "a.flac", "a.ogg"}) {
        AudioFileWriter dropped;
        ASSERT_EQ(dropped.open(folder / name, {}).error(), "");
        ASSERT_EQ(pull(dropped, tone, 10'000).error(), "");
        EXPECT_EQ(filesInFolder(), 1U);
    }
    EXPECT_EQ(filesInFolder(), 0U);
}

TEST_F(AudioFileWriterTest, RemovesWhatIsPendingWhereTheProgramEndsAtOnce)
{
    ASSERT_EQ(writer.open(folder / "a.wav", {}).error(), "");
    removePendingFiles();
    EXPECT_EQ(filesInFolder(), 0U);
}

TEST_F(AudioFileWriterTest, RefusesAnUnknownEnding)
{
    EXPECT_EQ(writer.open(folder / "a.mp3", {}).error(),
              "Audio files cannot be written as .mp3: the name must end in .wav, .flac or .ogg.");
    EXPECT_EQ(writer.open(folder / "a", {}).error(), "An audio file's name must end in .wav, .flac or .ogg.");
    EXPECT_EQ(filesInFolder(), 0U);
}

TEST_F(AudioFileWriterTest, GivesAPipeOrADeviceWithoutAnEndingAWAVFile)
{
    const std::filesystem::path pipe = folder / "pipe";
    ASSERT_EQ(mkfifo(pipe.c_str(), 0600), 0);
    const auto wave = AudioFileFormat::of("a.wav", 48'000);
    const auto free = AudioFileFormat::of("a.flac", 48'000);
    ASSERT_TRUE(wave && free);
    for (const std::filesystem::path& path :
         {pipe, std::filesystem::path("/dev/null"), std::filesystem::path("/dev/stdout")}) {
        const auto format = AudioFileFormat::of(path, 48'000);
        ASSERT_TRUE(format) << path;
        EXPECT_EQ(format->code, wave->code) << path;
    }
    ASSERT_EQ(mkfifo((folder / "pipe.flac").c_str(), 0600), 0);
    EXPECT_EQ(AudioFileFormat::of(folder / "pipe.flac", 48'000)->code, free->code);
    EXPECT_FALSE(AudioFileFormat::of(folder, 48'000));
}

TEST_F(AudioFileWriterTest, RefusesARateBeyondTheBounds)
{
    EXPECT_EQ(writer.open(folder / "a.wav", {7999}).error(),
              "Audio files cannot be written at 7999 Hz: it must be 8000 to 192000.");
    EXPECT_FALSE(writer.open(folder / "a.wav", {192'001}));
    EXPECT_EQ(writer.open(folder / "a.wav", {8000}).error(), "");
    EXPECT_EQ(writer.open(folder / "a.ogg", {192'000}).error(), "");
}

TEST_F(AudioFileWriterTest, RefusesAFolderThatIsNotThere)
{
    const std::filesystem::path path = folder / "none" / "a.wav";
    EXPECT_EQ(writer.open(path, {}).error(),
              "'" + path.string() + "' could not be written: its folder does not exist.");
}

TEST_F(AudioFileWriterTest, RefusesAFolderInPlaceOfAFile)
{
    std::filesystem::create_directory(folder / "a.wav");
    EXPECT_EQ(writer.open(folder / "a.wav", {}).error(),
              "'" + (folder / "a.wav").string() + "' could not be written: it is a folder.");
}

TEST_F(AudioFileWriterTest, ADeviceGetsTheCompleteFile)
{
    std::filesystem::create_symlink("/dev/null", folder / "a.wav");
    ASSERT_EQ(writer.open(folder / "a.wav", {}).error(), "");
    EXPECT_EQ(writer.finish().error(), "");
    EXPECT_TRUE(std::filesystem::is_character_file("/dev/null"));
    std::filesystem::create_symlink("/dev/full", folder / "b.wav");
    ASSERT_EQ(writer.open(folder / "b.wav", {}).error(), "");
    EXPECT_EQ(writer.finish().error(),
              "'" + (folder / "b.wav").string() + "' could not be written: the device is full.");
}

TEST_F(AudioFileWriterTest, RefusesAFolderThatMayNotBeWritten)
{
    if (geteuid() == 0) {
        GTEST_SKIP() << "nothing is forbidden to this user";
    }
    chmod(folder.c_str(), 0555);
    const Result<> opened = writer.open(folder / "a.wav", {});
    chmod(folder.c_str(), 0755);
    EXPECT_EQ(opened.error(),
              "'" + (folder / "a.wav").string() + "' could not be written: its folder is not writable.");
}

TEST_F(AudioFileWriterTest, FailsOnceAndForAllWhereNoMoreFits)
{
    std::signal(SIGXFSZ, SIG_IGN);
    rlimit before = {};
    getrlimit(RLIMIT_FSIZE, &before);
    const rlimit small = {100'000, before.rlim_max};
    for (const std::string name : {"a.wav", "a.flac", "a.ogg"}) {
        putFile(name, "before");
        ASSERT_EQ(writer.open(folder / name, {}).error(), "");
        setrlimit(RLIMIT_FSIZE, &small);
        Tone noise;
        noise.gain = 1e4;
        const Result<> pulled = pull(writer, noise, 4'800'000);
        const Result<> finished = pulled ? writer.finish() : pulled;
        setrlimit(RLIMIT_FSIZE, &before);
        EXPECT_FALSE(finished) << name;
        EXPECT_EQ(finished.error(), "'" + (folder / name).string() +
                                        "' could not be written: it would be larger than allowed.");
        EXPECT_EQ(pull(writer, noise, 1).error(), finished.error());
        EXPECT_EQ(writer.finish().error(), finished.error());
        EXPECT_EQ(textOf(name), "before");
    }
    EXPECT_EQ(filesInFolder(), 3U);
}

TEST_F(AudioFileWriterTest, RefusesToWriteWhereNothingIsOpen)
{
    EXPECT_EQ(writer.finish().error(), "No audio file is being written.");
    writeTone("a.wav", 10, {});
    EXPECT_EQ(pull(writer, tone, 10).error(), "No audio file is being written.");
    EXPECT_EQ(writer.length(), 0);
}

} // namespace volvelle::test
