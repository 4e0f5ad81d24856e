#include "services/soundunits/MIDISynthUnit.h"
#include "base/Paths.h"
#include "services/audiograph/graph/AVAudioEngine.h"
#include "services/audiograph/graph/AVAudioUnitMIDIInstrument.h"
#include "services/audiograph/graph/AudioUnitCalls.h"
#include "services/synthesizer/SoundBanks.h"
#include "tests/services/soundunits/KnownSynth.h"
#include "tests/services/synthesizer/LargeBank.h"
#include "tests/support/ConsoleCapture.h"
#include "tests/support/HandClock.h"
#include "tests/support/ProjectFolders.h"

#include <gtest/gtest.h>

#include <array>
#include <cmath>
#include <fstream>

namespace volvelle {
namespace {

namespace fs = std::filesystem;

constexpr int blockFrames = 512;
constexpr std::uint32_t noteOn = 0x90;
constexpr std::uint32_t program = 0xC0;

class MIDISynthUnitTest : public testing::Test {
protected:
    MIDISynthUnitTest()
    {
        setResourcesFolder(test::buildFolder() / "resources");
        test::registerMIDISynth();
        engine->enableManualRenderingMode(blockFrames);
    }

    ~MIDISynthUnitTest() override
    {
        engine->stop();
        setResourcesFolder(std::nullopt);
    }

    void begin()
    {
        instrument = AVAudioUnitMIDIInstrument::make(synthesizerComponent);
        ASSERT_NE(instrument, nullptr);
        ASSERT_EQ(engine->attachNode(instrument), noErr);
        ASSERT_EQ(engine->connect(instrument, engine->mainMixerNode(), 0, 0), noErr);
        ASSERT_EQ(engine->start().error(), "");
    }

    MIDISynthUnit& unit() { return dynamic_cast<MIDISynthUnit&>(*instrument->auAudioUnit()); }

    void send(std::uint32_t status, std::uint32_t data1, std::uint32_t data2 = 0)
    {
        ASSERT_EQ(MusicDeviceMIDIEvent(instrument->auAudioUnit(), status, data1, data2, 0), noErr);
    }

    // Root mean square of what sounds over some blocks, on the left.
    double level(int blocks)
    {
        double sum = 0.0;
        for (int i = 0; i < blocks; ++i) {
            EXPECT_EQ(engine->renderOffline(blockFrames, left.data(), right.data()), noErr);
            for (const float sample : left) {
                sum += static_cast<double>(sample) * static_cast<double>(sample);
            }
        }
        return std::sqrt(sum / blocks / blockFrames);
    }

    OSStatus setBank(const fs::path& bank)
    {
        const fs::path* const location = &bank;
        return AudioUnitSetProperty(instrument->auAudioUnit(), MIDISynthUnit::soundBankProperty, 0, 0,
                                    &location, sizeof location);
    }

    OSStatus setPreload(std::uint32_t flag)
    {
        return AudioUnitSetProperty(instrument->auAudioUnit(), MIDISynthUnit::enablePreloadProperty, 0, 0,
                                    &flag, sizeof flag);
    }

    const std::shared_ptr<AVAudioEngine> engine = std::make_shared<AVAudioEngine>();
    std::shared_ptr<AVAudioUnitMIDIInstrument> instrument;
    std::array<float, blockFrames> left{};
    std::array<float, blockFrames> right{};
};

TEST_F(MIDISynthUnitTest, ItsBuiltInSoundsAreTheBestInstalledBank)
{
    begin();
    EXPECT_EQ(unit().soundBank(), *bestInstalledBank());
    EXPECT_EQ(unit().soundBank().filename(), "gs_instruments.dls");
}

TEST_F(MIDISynthUnitTest, ItHasOneBusThatIsInUse)
{
    begin();
    const auto& busses = instrument->auAudioUnit()->outputBusses;
    ASSERT_EQ(busses.size(), 1U);
    EXPECT_TRUE(busses.front().isEnabled);
    EXPECT_EQ(busses.front().format.channelCount, 2U);
}

TEST_F(MIDISynthUnitTest, ANoteSoundsAndDiesAway)
{
    begin();
    EXPECT_LT(level(4), 1e-6);
    send(noteOn, 69, 100);
    EXPECT_GT(level(20), 1e-3);
    EXPECT_GT(unit().activeVoices(), 0);
    send(noteOn, 69, 0);
    level(400);
    EXPECT_LT(level(10), 1e-4);
}

TEST_F(MIDISynthUnitTest, AMissingBankIsAStatusAndALogLineAndTheSoundGoesOn)
{
    begin();
    const fs::path before = unit().soundBank();
    test::ConsoleCapture capture;
    EXPECT_EQ(setBank("/nowhere/bank.sf2"), kAudioUnitErr_InvalidFile);
    EXPECT_EQ(capture.take().size(), 1U);
    EXPECT_EQ(unit().soundBank(), before);
    send(noteOn, 60, 100);
    EXPECT_GT(level(20), 1e-3);
}

TEST_F(MIDISynthUnitTest, RubbishInPlaceOfABankLeavesTheSoundAlone)
{
    begin();
    const fs::path rubbish = fs::temp_directory_path() / "volvelle-rubbish.dls";
    std::ofstream(rubbish) << "RIFF\x10\0\0\0DLS this is no bank";
    EXPECT_EQ(setBank(rubbish), kAudioUnitErr_InvalidFile);
    fs::remove(rubbish);
    send(noteOn, 60, 100);
    EXPECT_GT(level(20), 1e-3);
}

TEST_F(MIDISynthUnitTest, AnotherBankTakesOverTheChannelsAsTheyStood)
{
    begin();
    send(0xB0, 7, 0);
    level(1);
    ASSERT_EQ(setBank(unit().soundBank()), noErr);
    send(noteOn, 60, 100);
    EXPECT_LT(level(20), 1e-4);
    send(0xB0, 7, 100);
    send(noteOn, 64, 100);
    EXPECT_GT(level(20), 1e-3);
}

TEST_F(MIDISynthUnitTest, ProgramChangesUnderPreloadNeitherSoundNorChangeTheChannel)
{
    begin();
    send(program, 19);
    send(noteOn, 60, 100);
    const double organ = level(200);
    send(noteOn, 60, 0);
    level(600);

    ASSERT_EQ(setPreload(1), noErr);
    for (std::uint32_t patch = 0; patch < 128; ++patch) {
        send(0xB0, 0, 0);
        send(0xB0, 32, 0);
        send(program, patch);
    }
    send(noteOn, 72, 100);
    ASSERT_EQ(setPreload(0), noErr);
    EXPECT_LT(level(20), 1e-4);

    send(noteOn, 60, 100);
    EXPECT_NEAR(level(200), organ, organ * 0.05);
}

TEST_F(MIDISynthUnitTest, MessagesUnderPreloadAreHeldToTheirRange)
{
    begin();
    ASSERT_EQ(setPreload(1), noErr);
    const auto sent = [this](std::uint32_t status, std::uint32_t data1, std::uint32_t data2) {
        return MusicDeviceMIDIEvent(instrument->auAudioUnit(), status, data1, data2, 0);
    };
    EXPECT_EQ(sent(0xFF, 127, 127), noErr);
    EXPECT_EQ(sent(0x1C0, 0, 0), kAudio_ParamError);
    EXPECT_EQ(sent(0xC0, 128, 0), kAudio_ParamError);
    EXPECT_EQ(sent(0xC0, 0, 128), kAudio_ParamError);
}

TEST_F(MIDISynthUnitTest, PropertiesAreHeldToTheirShape)
{
    begin();
    const auto& handle = instrument->auAudioUnit();
    const std::uint32_t flag = 1;
    EXPECT_EQ(AudioUnitSetProperty(handle, MIDISynthUnit::enablePreloadProperty, 0, 0, &flag, 2),
              kAudio_ParamError);
    EXPECT_EQ(AudioUnitSetProperty(handle, MIDISynthUnit::enablePreloadProperty, 0, 0, nullptr, 4),
              kAudio_ParamError);
    EXPECT_EQ(AudioUnitSetProperty(handle, MIDISynthUnit::soundBankProperty, 0, 0, nullptr, 8),
              kAudio_ParamError);
    EXPECT_EQ(AudioUnitSetProperty(handle, MIDISynthUnit::enablePreloadProperty, 0, 1, &flag, 4),
              kAudioUnitErr_InvalidElement);
    EXPECT_EQ(AudioUnitSetProperty(handle, 1, 0, 0, &flag, 4), kAudioToolboxErr_InvalidProperty);
}

TEST_F(MIDISynthUnitTest, TheFirstBankThatComesLateFindsTheChannelsAsTheyStand)
{
    setResourcesFolder("/nowhere");
    test::registerMIDISynth({}, "/nowhere/bank.dls");
    test::ConsoleCapture capture;
    begin();
    EXPECT_EQ(capture.take(),
              (std::vector<std::string>{"The sound bank \"/nowhere/bank.dls\" cannot be read.",
                                        "The sound bank '/nowhere/bank.dls' could not be loaded."}));
    send(0xB0, 7, 0);
    level(1);
    ASSERT_EQ(setBank(test::buildFolder() / "resources/gs_instruments.dls"), noErr);
    send(noteOn, 60, 100);
    EXPECT_LT(level(20), 1e-4);
    send(0x91, 60, 100);
    EXPECT_GT(level(20), 1e-3);
}

// Counts what the process keeps open: a synthesizer of a large bank holds its copy.
TEST_F(MIDISynthUnitTest, AReplacedSynthesizerIsFreedWithinASecondWhileTheEngineRuns)
{
    test::HandClock clock;
    const test::LargeBank large;
    engine->disableManualRenderingMode();
    test::registerMIDISynth({}, large.path);
    begin();
    const auto render = [this] { engine->render(left.data(), right.data(), blockFrames); };
    render();
    const std::weak_ptr<const BankFile> first = *BankFile::open(large.path);
    ASSERT_FALSE(first.expired());
    ASSERT_EQ(setBank(test::buildFolder() / "resources/gs_instruments.dls"), noErr);
    render();
    EXPECT_FALSE(first.expired());
    clock.advance(0.9);
    EXPECT_TRUE(first.expired());
    engine->stop();
    EXPECT_FALSE(mainRunLoop().nextFire());
}

TEST_F(MIDISynthUnitTest, WithoutAnyBankItIsSilentAndSaysSo)
{
    setResourcesFolder("/nowhere");
    const auto best = bestInstalledBank();
    test::ConsoleCapture capture;
    begin();
    if (best) {
        EXPECT_EQ(unit().soundBank(), *best);
    } else {
        EXPECT_EQ(capture.take(),
                  std::vector<std::string>{
                      "There is no sound bank: the music plays without sound. Install a SoundFont."});
        send(noteOn, 60, 100);
        EXPECT_EQ(level(20), 0.0);
    }
}

} // namespace
} // namespace volvelle
