#include "tests/services/synthesizer/LargeBank.h"

#include "services/audiograph/graph/AudioUnitCalls.h"
#include "services/soundunits/MIDISynthUnit.h"
#include "tests/services/soundunits/SynthStudio.h"
#include "tests/support/ConsoleCapture.h"
#include "tests/support/RealtimeGuard.h"

#include <array>
#include <csignal>
#include <fstream>
#include <gmock/gmock.h>
#include <sys/resource.h>
#include <unistd.h>

namespace volvelle::test {

namespace {

namespace fs = std::filesystem;

constexpr int piano = 0;
constexpr int organ = 19;
constexpr int strings = 48;

// What every promise about banks must hold for, where sounds are read from disk when they are needed.
class LargeBanks : public testing::Test {
protected:
    MIDISynthUnit& unit() { return dynamic_cast<MIDISynthUnit&>(*studio.instrument->auAudioUnit()); }

    void send(int status, int data1, int data2 = 0)
    {
        ASSERT_EQ(MusicDeviceMIDIEvent(studio.instrument->auAudioUnit(), static_cast<std::uint32_t>(status),
                                       static_cast<std::uint32_t>(data1), static_cast<std::uint32_t>(data2),
                                       0),
                  noErr);
    }

    // A note by itself, from silence to silence.
    std::vector<float> heardNote(int channel = 0)
    {
        send(0x90 | channel, 60, 100);
        std::vector<float> sound = studio.run(60);
        send(0xB0 | channel, 120);
        studio.run(10);
        return sound;
    }

    OSStatus setBank(const fs::path& path)
    {
        const fs::path* const location = &path;
        return AudioUnitSetProperty(studio.instrument->auAudioUnit(), MIDISynthUnit::soundBankProperty, 0, 0,
                                    &location, sizeof location);
    }

    void overwriteBank() const
    {
        std::fstream file(bank.path, std::ios::binary | std::ios::in | std::ios::out);
        const std::string rubbish(fs::file_size(bank.path), '\x55');
        file << rubbish;
    }

    // The same from the small bank.
    std::vector<float> trueNote(int program)
    {
        const auto& unit = small.instrument->auAudioUnit();
        EXPECT_EQ(unit->musicDeviceMIDIEvent(0xC0, static_cast<std::uint32_t>(program), 0, 0), noErr);
        small.run(3);
        EXPECT_EQ(unit->musicDeviceMIDIEvent(0x90, 60, 100, 0), noErr);
        return small.run(60);
    }

    void askForStrings()
    {
        send(0xC0, strings);
        studio.run(1);
        studio.engine->collectGarbage();
        studio.run(2);
    }

    static Song programs()
    {
        Song song;
        for (int i = 0; i < 64; ++i) {
            song.message(i * 0.25, 0xC0, i * 2)
                .note(i * 0.25, 0, 60, 100, 0.2)
                .note(i * 0.25, 9, 36, 100, 0.1);
        }
        return song.exclusive(3.0, {0xF0, 0x7E, 0x7F, 0x09, 0x01, 0xF7});
    }

    LargeBank bank;
    SynthStudio studio{bank.path};
    SynthStudio small{"/usr/share/sounds/sf2/TimGM6mb.sf2"};
};

TEST_F(LargeBanks, SoundLikeTheSmallBankThatTheyAreMadeOf)
{
    studio.load(programs());
    small.load(programs());
    studio.start();
    small.start();
    const std::vector<float> expected = small.run(400);
    EXPECT_LE(greatestDifference(studio.run(400), expected), 5.0e-4F);
    EXPECT_GT(loudest(expected), 0.01F);
}

// Not even the block that the library behind takes for its effects: they are off here.
TEST_F(LargeBanks, StartSeekAndStopTakeNoMemoryNoLockAndNoFile)
{
    studio.load(programs());
    studio.run(2);
    std::array<float, 512> left{};
    std::array<float, 512> right{};
    const auto guarded = [&](int blocks) {
        for (int i = 0; i < blocks; ++i) {
            const RealtimeGuard guard;
            studio.engine->render(left.data(), right.data(), 512);
        }
    };
    studio.start();
    guarded(100);
    studio.sequencer->setCurrentPositionInBeats(5.0);
    guarded(100);
    studio.sequencer->setCurrentPositionInBeats(0.0);
    guarded(10);
    studio.sequencer->stop();
    guarded(100);
    studio.start();
    guarded(300);
    studio.start(9.0);
    guarded(100);
}

TEST_F(LargeBanks, ASoundThatNobodyAnnouncedComesWithTheNextHousekeeping)
{
    const std::vector<float> before = heardNote();
    send(0xC0, organ);
    std::array<float, 512> left{};
    std::array<float, 512> right{};
    {
        const RealtimeGuard guard;
        studio.engine->render(left.data(), right.data(), 512);
    }
    EXPECT_GT(loudest(before), 0.01F);
    EXPECT_LE(greatestDifference(heardNote(), before), loudest(before) * 0.3F);
    studio.engine->collectGarbage();
    studio.run(2);
    const std::vector<float> after = heardNote();
    small.instrument->auAudioUnit()->musicDeviceMIDIEvent(0xC0, organ, 0, 0);
    small.run(80);
    small.instrument->auAudioUnit()->musicDeviceMIDIEvent(0x90, 60, 100, 0);
    EXPECT_LE(greatestDifference(after, small.run(60)), 1.0e-3F);
}

TEST_F(LargeBanks, AStrayProgramOfDrumsIsAskedForAsDrums)
{
    send(0xC9, 25);
    studio.run(1);
    studio.engine->collectGarbage();
    studio.run(2);
    small.instrument->auAudioUnit()->musicDeviceMIDIEvent(0xC9, 25, 0, 0);
    small.run(3);
    small.instrument->auAudioUnit()->musicDeviceMIDIEvent(0x99, 36, 100, 0);
    send(0x99, 36, 100);
    const std::vector<float> expected = small.run(8);
    EXPECT_LE(greatestDifference(studio.run(8), expected), loudest(expected) * 0.05F);
    EXPECT_GT(loudest(expected), 0.01F);
}

TEST_F(LargeBanks, ABankThatIsDeletedPlaysOnWithAllItsSounds)
{
    const std::vector<float> before = heardNote();
    fs::remove(bank.path);
    askForStrings();
    EXPECT_LE(greatestDifference(heardNote(), trueNote(strings)), 1.0e-3F);
    send(0xC0, piano);
    studio.run(1);
    EXPECT_LE(greatestDifference(heardNote(), before), loudest(before) * 0.1F);
}

TEST_F(LargeBanks, ABankThatIsOverwrittenPlaysOnWithAllItsSounds)
{
    studio.load(programs());
    studio.start();
    const std::vector<float> before = studio.run(200);
    overwriteBank();
    studio.sequencer->stop();
    studio.run(400);
    studio.start();
    const std::vector<float> after = studio.run(200);
    EXPECT_GT(loudest(before), 0.01F);
    EXPECT_NEAR(loudest(after), loudest(before), loudest(before) * 0.05F);
    studio.sequencer->stop();
    studio.run(400);
    askForStrings();
    EXPECT_LE(greatestDifference(heardNote(), trueNote(strings)), 1.0e-3F);
}

TEST_F(LargeBanks, ABankThatIsCutOffPlaysOnWithAllItsSounds)
{
    fs::resize_file(bank.path, 1000);
    askForStrings();
    EXPECT_LE(greatestDifference(heardNote(), trueNote(strings)), 1.0e-3F);
}

TEST_F(LargeBanks, AnotherBankThatCannotBeLoadedLeavesTheSoundsInPlace)
{
    studio.load(programs());
    studio.start();
    studio.run(10);
    ConsoleCapture capture;
    EXPECT_EQ(setBank("/nowhere/bank.sf2"), kAudioUnitErr_InvalidFile);
    EXPECT_THAT(capture.take(), testing::ElementsAre("The sound bank \"/nowhere/bank.sf2\" cannot be read."));
    send(0xC3, strings);
    studio.run(1);
    studio.engine->collectGarbage();
    studio.start();
    std::array<float, 512> left{};
    std::array<float, 512> right{};
    studio.engine->render(left.data(), right.data(), 512);
    for (int i = 0; i < 200; ++i) {
        const RealtimeGuard guard;
        studio.engine->render(left.data(), right.data(), 512);
    }
    EXPECT_EQ(unit().soundBank(), bank.path);
}

TEST_F(LargeBanks, SoundsThatWereAnnouncedAreThereInTheNextBankAtOnce)
{
    const LargeBank another;
    studio.load(Song().message(0.0, 0xC0, organ).note(8.0, 0, 60, 100, 1.0));
    studio.start();
    studio.run(10);
    ASSERT_EQ(setBank(another.path), noErr);
    studio.run(2);
    EXPECT_LE(greatestDifference(heardNote(), trueNote(organ)), 1.0e-3F);
}

TEST_F(LargeBanks, AProgramThatWasPreloadedIsThereAtOnce)
{
    for (const std::uint32_t flag : {1U, 0U}) {
        ASSERT_EQ(AudioUnitSetProperty(studio.instrument->auAudioUnit(), MIDISynthUnit::enablePreloadProperty,
                                       0, 0, &flag, sizeof flag),
                  noErr);
        if (flag == 1U) {
            send(0xC0, organ);
        }
    }
    studio.run(2);
    send(0xC0, organ);
    EXPECT_LE(greatestDifference(heardNote(), trueNote(organ)), 1.0e-3F);
}

TEST_F(LargeBanks, TheStateOfTheChannelsGoesOnInAnotherBank)
{
    send(0xB0, 11, 40);
    send(0xB0, 101, 0);
    send(0xB0, 100, 1);
    send(0xB0, 6, 40);
    studio.run(1);
    const std::vector<float> before = heardNote();
    ASSERT_EQ(setBank("/usr/share/sounds/sf2/TimGM6mb.sf2"), noErr);
    studio.run(2);
    const std::vector<float> after = heardNote();
    EXPECT_LE(greatestDifference(after, before), 1.0e-3F);
    EXPECT_GT(loudest(before), 1.0e-3F);
}

// The library has a cache of samples for the process: two parts of a rendering hold one copy.
TEST_F(LargeBanks, AllSynthesizersOfABankShareItsCopy)
{
    const auto one = *BankFile::open(bank.path);
    const auto other = *BankFile::open(bank.path);
    ASSERT_NE(one, nullptr);
    EXPECT_EQ(one, other);
    EXPECT_TRUE(one->isLarge());
    EXPECT_FALSE(fs::equivalent(one->readable, one->path));
    overwriteBank();
    EXPECT_NE(*BankFile::open(bank.path), one);
}

// Whoever is told nothing of that signal dies of it.
TEST(LargeBankFile, WithoutRoomForItsCopyByTheLimitOfAFileItIsUsedItself)
{
    const LargeBank bank;
    const rlimit limit{1000, 1000};
    EXPECT_EXIT(
        {
            std::signal(SIGXFSZ, SIG_DFL);
            setrlimit(RLIMIT_FSIZE, &limit);
            const auto file = BankFile::open(bank.path);
            _exit(file && fs::equivalent((*file)->readable, bank.path) ? 7 : 8);
        },
        testing::ExitedWithCode(7), "");
}

} // namespace

} // namespace volvelle::test
