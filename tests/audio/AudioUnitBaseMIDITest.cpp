#include "tests/audio/UnitFixture.h"
#include "tests/support/HandClock.h"

#include <thread>

namespace volvelle::test {
namespace {

class AudioUnitBaseMIDITest : public UnitTest {
protected:
    void SetUp() override
    {
        component.plan.MIDIOutputNames = {"notes"};
        wrapper->create("Arp");
        created = console.take();
        listener->calls.clear();
        listener->created.reset();
    }

    HandClock clock;
    Lines created;
    const std::string warning = "WARNING: No delegate defined for Audio Unit MIDI messages.";
};

TEST_F(AudioUnitBaseMIDITest, AUnitWithMIDIOutputsGetsAHandlingBlock)
{
    Lines expected{
        "AudioUnitBase:create(): The audio unit reports MIDI output names. Assigning a handling block."};
    for (const std::string& line : parametersRead("Arp")) {
        expected.push_back(line);
    }
    EXPECT_EQ(created, expected);
}

TEST_F(AudioUnitBaseMIDITest, WhatTheUnitPlaysReachesTheDelegateAtOnce)
{
    EXPECT_EQ(component.unit->playMIDI(4800, 2, {0x90, 60, 100}), noErr);
    EXPECT_EQ(component.unit->playMIDI(4801, 0, {0x80, 60}), noErr);
    EXPECT_EQ(listener->calls,
              (Lines{"MIDI of Arp: [144, 60, 100] at 4800 on 2", "MIDI of Arp: [128, 60] at 4801 "
                                                                 "on 0"}));
    EXPECT_EQ(console.take(), Lines{});
}

TEST_F(AudioUnitBaseMIDITest, AMessageThatDoesNotBeginWithAStatusNeverReachesTheDelegate)
{
    EXPECT_EQ(component.unit->playMIDI(0, 0, {0x7F, 60, 100}), noErr);
    EXPECT_EQ(wrapper->midi_local(0, 0, 0, nullptr), noErr);
    EXPECT_EQ(listener->calls, Lines{});
}

TEST_F(AudioUnitBaseMIDITest, WithoutADelegateAMessageIsAWarning)
{
    listener.reset();
    EXPECT_EQ(component.unit->playMIDI(0, 0, {0x90, 60, 100}), noErr);
    EXPECT_EQ(console.take(), Lines{warning});
    EXPECT_EQ(component.unit->playMIDI(0, 0, {0x10}), noErr);
    EXPECT_EQ(console.take(), Lines{});
}

TEST_F(AudioUnitBaseMIDITest, OnAnotherThreadTheWarningWaitsForTheMainThreadAndComesOnce)
{
    listener.reset();
    std::thread([this] {
        component.unit->playMIDI(0, 0, {0x90, 60, 100});
        component.unit->playMIDI(1, 0, {0x80, 60, 0});
    }).join();
    EXPECT_EQ(console.take(), Lines{});
    clock.advance(0.1);
    EXPECT_EQ(console.take(), Lines{warning});
    clock.advance(0.1);
    EXPECT_EQ(console.take(), Lines{});
}

TEST_F(AudioUnitBaseMIDITest, DestroyingEndsTheWaitForWarnings)
{
    EXPECT_TRUE(mainRunLoop().nextFire());
    wrapper->create("Again");
    listener->created.reset();
    clock.advance(0.1);
    EXPECT_TRUE(mainRunLoop().nextFire());
    wrapper->destroy();
    EXPECT_FALSE(mainRunLoop().nextFire());
}

TEST_F(AudioUnitBaseMIDITest, AUnitThatOutlivesItsWrapperPlaysIntoNothing)
{
    wrapper.reset();
    EXPECT_EQ(component.unit->playMIDI(0, 0, {0x90, 60, 100}), noErr);
    EXPECT_EQ(listener->calls, Lines{});
    EXPECT_FALSE(mainRunLoop().nextFire());
}

} // namespace
} // namespace volvelle::test
