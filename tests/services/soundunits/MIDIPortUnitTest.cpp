#include "services/soundunits/MIDIPortUnit.h"
#include "services/audiograph/graph/AVAudioEngine.h"
#include "services/audiograph/graph/AVAudioUnitMIDIInstrument.h"
#include "services/audiograph/graph/AudioComponentRegistry.h"
#include "services/audiograph/graph/AudioUnitCalls.h"
#include "tests/support/ConsoleCapture.h"
#include "tests/support/RealtimeGuard.h"

#include <gtest/gtest.h>

#include <array>
#include <atomic>
#include <chrono>
#include <semaphore>

namespace volvelle {
namespace {

using Bytes = std::vector<std::uint8_t>;

struct FakePort : MIDIOutput {
    FakePort(std::vector<Bytes>& into, bool isBroken) : sent(into), broken(isBroken) {}

    Result<> send(std::span<const std::uint8_t> bytes) override
    {
        if (broken) {
            return failure("The port is gone.");
        }
        sent.emplace_back(bytes.begin(), bytes.end());
        return {};
    }

    std::string name() const override { return "Fake"; }

    std::vector<Bytes>& sent;
    bool broken;
};

class MIDIPortUnitTest : public testing::Test {
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
        ASSERT_EQ(engine->start().error(), "");
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

    // A unit in no engine, that sends into `sent`.
    std::unique_ptr<MIDIPortUnit> makeUnit()
    {
        return std::make_unique<MIDIPortUnit>(midiPortComponent, std::make_unique<FakePort>(sent, false));
    }

    // Renders one block with these messages.
    static void render(MIDIPortUnit& unit, const std::vector<Bytes>& messages)
    {
        std::array<float, 64> left{};
        std::array<float, 64> right{};
        for (const Bytes& message : messages) {
            ASSERT_EQ(unit.scheduleMIDIEvent(0, 0, static_cast<int>(message.size()), message.data()), noErr);
        }
        const test::RealtimeGuard guard;
        unit.render(nullptr, nullptr, left.data(), right.data(), 64);
    }

    std::vector<Bytes> sent;
};

// Tells when a note-off comes.
struct TellingPort : MIDIOutput {
    explicit TellingPort(std::binary_semaphore& toTell) : ended(toTell) {}

    Result<> send(std::span<const std::uint8_t> bytes) override
    {
        if (bytes[0] == 0x80) {
            ended.release();
        }
        return {};
    }

    std::string name() const override { return "Telling"; }

    std::binary_semaphore& ended;
};

TEST_F(MIDIPortUnitTest, WhatSoundsEndsWhenTheEngineStopsThoughNothingIsRenderedAnyMore)
{
    std::binary_semaphore ended{0};
    MIDIPortUnit unit(midiPortComponent, std::make_unique<TellingPort>(ended));
    render(unit, {{0x90, 60, 100}});
    unit.engineStopped();
    EXPECT_TRUE(ended.try_acquire_for(std::chrono::seconds(20)));
}

TEST_F(MIDIPortUnitTest, MessagesGoOutWholeAndInOrder)
{
    play(false);
    EXPECT_EQ(sent, (std::vector<Bytes>{{0x91, 60, 100}, {0xC1, 5}, {0x81, 60, 0}}));
}

TEST_F(MIDIPortUnitTest, ALostPortIsToldOnce)
{
    test::ConsoleCapture capture;
    play(true);
    EXPECT_EQ(capture.take(), std::vector<std::string>{"The port is gone."});
    EXPECT_TRUE(sent.empty());
}

TEST_F(MIDIPortUnitTest, ExclusivesOfAnyLengthGoOutWhole)
{
    Bytes dump(100'000, 0x55);
    dump.front() = 0xF0;
    dump.back() = 0xF7;
    const std::vector<Bytes> messages{{0xF0, 0x7E, 0x7F, 0x09, 0x01, 0xF7}, {0xF0, 1, 2, 0xF7}, dump, {0xFA}};
    auto unit = makeUnit();
    render(*unit, messages);
    unit = nullptr;
    EXPECT_EQ(sent, messages);
}

TEST_F(MIDIPortUnitTest, WhatSoundsAtTheEndOfTheUnitIsEnded)
{
    const std::vector<Bytes> messages{{0x93, 60, 100}, {0x93, 64, 1}, {0x83, 60, 0},  {0x90, 0, 127},
                                      {0xBF, 64, 127}, {0xB3, 66, 1}, {0xB3, 69, 64}, {0xB2, 64, 100},
                                      {0xB2, 64, 0},   {0x9F, 127, 9}};
    auto unit = makeUnit();
    render(*unit, messages);
    unit = nullptr;
    std::vector<Bytes> expected = messages;
    expected.insert(
        expected.end(),
        {{0x80, 0, 0}, {0x83, 64, 0}, {0xB3, 66, 0}, {0xB3, 69, 0}, {0x8F, 127, 0}, {0xBF, 64, 0}});
    EXPECT_EQ(sent, expected);
}

TEST_F(MIDIPortUnitTest, WhatSoundsWhereTheUnitLeavesItsEngineIsEndedOnce)
{
    auto unit = makeUnit();
    render(*unit, {{0x90, 60, 100}, {0xB0, 64, 127}});
    {
        const test::RealtimeGuard guard;
        unit->setInPlan(false);
        unit->setInPlan(true);
    }
    render(*unit, {{0x90, 62, 100}});
    unit = nullptr;
    EXPECT_EQ(
        sent,
        (std::vector<Bytes>{
            {0x90, 60, 100}, {0xB0, 64, 127}, {0x80, 60, 0}, {0xB0, 64, 0}, {0x90, 62, 100}, {0x80, 62, 0}}));
}

// A port that takes nothing until it is let go on.
struct SlowPort : MIDIOutput {
    SlowPort(std::vector<Bytes>& into, std::atomic<bool>& isFree) : sent(into), free(isFree) {}

    Result<> send(std::span<const std::uint8_t> bytes) override
    {
        free.wait(false);
        sent.emplace_back(bytes.begin(), bytes.end());
        return {};
    }

    std::string name() const override { return "Slow"; }

    std::vector<Bytes>& sent;
    std::atomic<bool>& free;
};

// A port whose sending does not come back before it may, and that tells its own end.
struct StuckPort : MIDIOutput {
    struct Signals {
        std::atomic<bool> isEntered{false};
        std::atomic<bool> mayGoOn{false};
        std::atomic<bool> isClosed{false};
    };

    explicit StuckPort(Signals& of) : signals(of) {}

    ~StuckPort() override
    {
        signals.isClosed = true;
        signals.isClosed.notify_all();
    }

    Result<> send(std::span<const std::uint8_t>) override
    {
        signals.isEntered = true;
        signals.isEntered.notify_all();
        signals.mayGoOn.wait(false);
        return {};
    }

    std::string name() const override { return "Stuck"; }

    Signals& signals;
};

TEST_F(MIDIPortUnitTest, APortWhoseSendingDoesNotComeBackIsLeft)
{
    StuckPort::Signals signals;
    auto sender = PortSender::make(std::make_unique<StuckPort>(signals));
    const Bytes note{0x90, 60, 100};
    EXPECT_TRUE(sender->queue.push({}, note));
    signals.isEntered.wait(false);
    sender->end(std::chrono::milliseconds(1));
    sender = nullptr;
    EXPECT_FALSE(signals.isClosed); // its thread still needs it
    signals.mayGoOn = true;
    signals.mayGoOn.notify_all();
    signals.isClosed.wait(false);
}

TEST_F(MIDIPortUnitTest, EachNoteEndsWhereAPortIsTooSlowForAll)
{
    std::atomic<bool> free{false};
    auto unit = std::make_unique<MIDIPortUnit>(midiPortComponent, std::make_unique<SlowPort>(sent, free));
    for (int i = 0; i < 100'000; ++i) {
        const auto key = static_cast<std::uint8_t>(i % 128);
        render(*unit, {{0x90, key, 100}, {0xB0, 7, key}, {0x80, key, 0}});
    }
    free = true;
    free.notify_all();
    unit = nullptr;
    EXPECT_LT(sent.size(), 300'000U);
    int sounding = 0;
    for (const Bytes& message : sent) {
        sounding += message[0] == 0x90 ? 1 : message[0] == 0x80 ? -1 : 0;
        ASSERT_GE(sounding, 0);
        ASSERT_LE(sounding, 1);
    }
    EXPECT_EQ(sounding, 0);
}

} // namespace
} // namespace volvelle
