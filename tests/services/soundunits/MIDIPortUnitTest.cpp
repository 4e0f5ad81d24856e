#include "services/soundunits/MIDIPortUnit.h"
#include "services/audiograph/AVAudioEngine.h"
#include "services/audiograph/AVAudioUnitMIDIInstrument.h"
#include "services/audiograph/AudioComponentRegistry.h"
#include "services/audiograph/AudioUnitCalls.h"
#include "tests/support/ConsoleCapture.h"

#include <gtest/gtest.h>

#include <array>

namespace volvelle {
namespace {

using Bytes = std::vector<std::uint8_t>;

struct FakePort : MIDIOutput {
    FakePort(std::vector<Bytes>& into, bool isBroken) : sent(into), broken(isBroken) {}

    bool send(std::span<const std::uint8_t> bytes, std::string& error) override
    {
        if (broken) {
            error = "The port is gone.";
            return false;
        }
        sent.emplace_back(bytes.begin(), bytes.end());
        return true;
    }

    std::string name() const override { return "Fake"; }

    std::vector<Bytes>& sent;
    bool broken;
};

class MIDIPort : public testing::Test {
protected:
    // Sends notes through an engine, and ends all, which sends what is on its way.
    void play(bool isBroken)
    {
        const auto engine = std::make_shared<AVAudioEngine>();
        registerAudioComponent(midiPortComponent, [&](const AudioComponentDescription& description) {
            return std::make_shared<MIDIPortUnit>(description, std::make_unique<FakePort>(sent, isBroken));
        });
        auto instrument = AVAudioUnitMIDIInstrument::make(midiPortComponent);
        ASSERT_EQ(engine->attachNode(instrument), noErr);
        ASSERT_EQ(engine->connect(instrument, engine->mainMixerNode(), 0, 0), noErr);
        engine->enableManualRenderingMode(512);
        std::string error;
        ASSERT_TRUE(engine->start(error));
        const auto unit = instrument->auAudioUnit();
        EXPECT_EQ(MusicDeviceMIDIEvent(unit, 0x91, 60, 100, 0), noErr);
        EXPECT_EQ(MusicDeviceMIDIEvent(unit, 0xC1, 5, 0, 10), noErr);
        EXPECT_EQ(MusicDeviceMIDIEvent(unit, 0x81, 60, 0, 20), noErr);
        std::array<float, 512> left{};
        std::array<float, 512> right{};
        left.fill(1.0F);
        EXPECT_EQ(engine->renderOffline(512, left.data(), right.data()), noErr);
        EXPECT_EQ(left.front(), 0.0F);
        engine->stop();
        registerAudioComponent(midiPortComponent, {});
    }

    std::vector<Bytes> sent;
};

TEST_F(MIDIPort, MessagesGoOutWholeAndInOrder)
{
    play(false);
    EXPECT_EQ(sent, (std::vector<Bytes>{{0x91, 60, 100}, {0xC1, 5}, {0x81, 60, 0}}));
}

TEST_F(MIDIPort, ALostPortIsToldOnce)
{
    test::ConsoleCapture capture;
    play(true);
    EXPECT_EQ(capture.take(), std::vector<std::string>{"The port is gone."});
    EXPECT_TRUE(sent.empty());
}

} // namespace
} // namespace volvelle
