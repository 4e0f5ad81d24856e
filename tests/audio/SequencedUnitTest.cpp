#include "tests/audio/FakeUnit.h"
#include "tests/audio/SequencedFixture.h"

#include "tests/support/RealtimeGuard.h"

#include <random>
#include <thread>

namespace volvelle::test {

namespace {

using SequencedUnitTest = SequencedTest;

using testing::ElementsAre;
using testing::Gt;
using testing::SizeIs;

// On all channels, from the first beat on: sixteenths, programs, controllers, pressures, bends, exclusives.
Song busySong(int beats)
{
    Song song;
    for (int channel = 0; channel < 16; ++channel) {
        song.message(1.0, 0xC0 | channel, 10 + channel).message(1.25, 0xB0 | channel, 7, 90 + channel);
        for (int i = 0; i < 4 * (beats - 1); ++i) {
            const double beat = 1.0 + i / 4.0;
            song.note(beat, channel, 40 + i * 7 % 40 + channel, 60 + i % 60, i % 3 == 0 ? 0.25 : 0.5, i % 2);
            song.message(beat, 0xE0 | channel, i % 128, (i * 5 + channel) % 128);
            song.message(beat, 0xD0 | channel, i % 128).message(beat, 0xA0 | channel, 40 + i, i);
            song.message(beat + 0.125, 0xA0 | channel, 40 + i, 0);
        }
    }
    return song.exclusive(1.5, exclusiveOf(9)).exclusive(2.0, exclusiveOf(700)).text(3, "a track");
}

// Whatever the file holds, at frame 0 too.
constexpr std::array<int, 6> blocks{512, 480, 333, 97, 1024, 4000};

TEST_F(SequencedUnitTest, AtAConstantTempoBothEnginesPlayTheSame)
{
    const auto file = busySong(8).file();
    const Heard expected = ofPlatform(file, 200'000);
    ASSERT_THAT(expected, SizeIs(Gt(2000U)));
    for (const int block : blocks) {
        expectSame(ofSequenced(file, 200'000, block), expected, 0);
    }
}

TEST_F(SequencedUnitTest, ANoteWithoutLengthIsPlayedByBothEnginesAtTheStartOfAFileToo)
{
    for (const double beat : {0.0, 0.5}) {
        const auto file = Song().note(beat, 3, 60, 100, 0.0).note(2.0, 3, 62, 90, 0.5).file();
        const Heard heard = ofPlatformWithItsStart(file, 72'000);
        expectSame(ofSequenced(file, 72'000, 512), notesOf(heard), 0);
        EXPECT_EQ(notesOf(heard).size(), 4U);
    }
}

TEST_F(SequencedUnitTest, FrameByFrameItPlaysTheSame)
{
    const auto file =
        Song().note(1.0, 3, 60, 100, 0.25).message(1.25, 0xC3, 5).note(1.25, 3, 62, 90, 0.1).file();
    expectSame(ofSequenced(file, 36'000, 1), ofPlatform(file, 36'000), 0);
}

TEST_F(SequencedUnitTest, FrameByFrameASlowTempoIsKept)
{
    const auto file = Song().tempo(0.0, 60.0).note(0.25, 3, 60, 100, 0.25).note(0.5, 3, 62, 90, 0.25).file();
    expectSame(ofSequenced(file, 40'000, 1), ofPlatform(file, 40'000), 1);
}

TEST_F(SequencedUnitTest, OutsideOfAnEngineAStopForgetsWhatWasSentBefore)
{
    const auto unit = std::make_shared<HeardUnit>();
    SequencedUnit sequenced(unit);
    EXPECT_EQ(sequenced.musicDeviceMIDIEvent(0x90, 1, 2, 0), noErr);
    sequenced.engineStopped();
    EXPECT_EQ(sequenced.musicDeviceMIDIEvent(0x90, 3, 4, 0), noErr);
    std::array<float, 512> left{};
    std::array<float, 512> right{};
    sequenced.render(nullptr, nullptr, left.data(), right.data(), 512);
    EXPECT_THAT(unit->heard, ElementsAre(HeardMessage{0, {0x90, 3, 4}}));
}

TEST_F(SequencedUnitTest, ChangesOfTempoAreFollowedToTheFrame)
{
    Song song = busySong(16);
    song.tempo(0.0, 97.3).tempo(2.5, 61.0).tempo(3.0, 240.0).tempo(4.125, 133.33).tempo(6.0, 300.0);
    const auto file = song.tempo(6.01, 299.0).tempo(9.0, 70.5).file();
    const Heard expected = ofPlatform(file, 700'000);
    for (const int block : blocks) {
        expectSame(ofSequenced(file, 700'000, block), expected, 1);
    }
}

TEST_F(SequencedUnitTest, WhateverTheTempiAnEventIsWithinAFrameOrASampleOfItsPlace)
{
    std::mt19937 random(11); // NOLINT(bugprone-random-generator-seed)
    for (int round = 0; round < 20; ++round) {
        const bool isSlow = round % 2 == 0;
        Song song = busySong(6);
        for (double beat = 0.0; beat < 6.0; beat += static_cast<double>(random() % 480) / 480.0) {
            song.tempo(beat, (isSlow ? 24.0 : 60.0) + static_cast<double>(random() % 50'000) / 100.0);
        }
        const auto file = song.file();
        const Heard expected = ofPlatform(file, 1'000'000);
        expectSame(ofSequenced(file, 1'000'000, 1 + static_cast<int>(random() % 512)), expected,
                   isSlow ? 4 : 1);
    }
}

TEST_F(SequencedUnitTest, AnUnevenTempoDoesNotDrift)
{
    Song song;
    for (int i = 4; i < 1200; ++i) {
        song.note(i / 4.0, 0, 60, 100, 0.25);
    }
    const auto file = song.tempo(0.0, 125.0).file();
    expectSame(ofSequenced(file, 145 * 48'000, 512), ofPlatform(file, 145 * 48'000), 1);
}

TEST_F(SequencedUnitTest, AtExtremeTempiNothingIsLost)
{
    Song song = busySong(12);
    const auto file = song.tempo(0.0, 12.0).tempo(1.1, 1200.0).tempo(6.0, 13.7).tempo(7.3, 1111.0).file();
    const Heard expected = ofPlatform(file, 1'000'000);
    expectSame(ofSequenced(file, 1'000'000, 512), expected, 10);
    expectSame(ofSequenced(file, 1'000'000, 97), expected, 10);
}

TEST_F(SequencedUnitTest, ItsInstrumentMayHaveAnotherRate)
{
    const auto unit = std::make_shared<HeardUnit>(true, 24000.0);
    const auto sequenced = std::make_shared<SequencedUnit>(unit);
    HandEngine hand(sequenced);
    ASSERT_EQ(sequenced->load(Song().tempo(0.0, 60.0).note(1.0, 0, 60, 100, 1.0).file()).error(), "");
    sequenced->start();
    hand.render(120'000, 512);
    const auto on =
        std::ranges::find_if(unit->heard, [](const auto& message) { return message.is(0x90, 60, 100); });
    const auto off =
        std::ranges::find_if(unit->heard, [](const auto& message) { return message.is(0x80, 60, 0); });
    ASSERT_NE(off, unit->heard.end());
    EXPECT_EQ(off->frame - on->frame, 24'000);
    EXPECT_LE(on->frame, 24'000 + 512);
}

TEST_F(SequencedUnitTest, WhatItIsAskedTheInstrumentAnswers)
{
    FakeUnitPlan plan;
    plan.takesMIDI = true;
    plan.MIDIOutputNames = {"out"};
    const auto fake = std::make_shared<FakeUnit>(fakeComponent, plan);
    SequencedUnit unit(fake);
    EXPECT_EQ(unit.componentDescription.componentSubType, fakeComponent.componentSubType);
    EXPECT_EQ(unit.audioUnitName, "Fake");
    EXPECT_EQ(unit.parameterTree, fake->parameterTree);
    EXPECT_TRUE(unit.takesMIDI);
    EXPECT_EQ(unit.MIDIOutputNames, fake->MIDIOutputNames);
    EXPECT_EQ(unit.latency(), fake->latency());
    EXPECT_EQ(unit.tailTime(), fake->tailTime());
    EXPECT_EQ(unit.fullState().size(), fake->fullState().size());
    unit.setFullState({});
    EXPECT_THAT(fake->states, SizeIs(1));
    const std::uint32_t value = 4;
    EXPECT_EQ(unit.setProperty(3, 1, 2, &value, 4), noErr);
    EXPECT_EQ(unit.musicDeviceMIDIEvent(0x90, 1, 2, 3), noErr);
    unit.prepareToPlay(std::vector<AUMIDIProgram>{{1, 0, 0, 9}});
    EXPECT_THAT(fake->calls,
                ElementsAre("property 3 of 1 2: 4 (4 bytes)", "midi 144 1 2 at 3", "prepare 9 on 1"));
    int played = 0;
    unit.setMIDIOutputEventBlock([&played](std::int64_t, std::uint8_t, int, const std::uint8_t*) {
        ++played;
        return noErr;
    });
    EXPECT_EQ(fake->playMIDI(0, 0, {0x90, 1, 2}), noErr);
    EXPECT_EQ(played, 1);
}

TEST_F(SequencedUnitTest, AnInstrumentThatOutlivesItSendsToNothing)
{
    FakeUnitPlan plan;
    plan.MIDIOutputNames = {"out"};
    const auto fake = std::make_shared<FakeUnit>(fakeComponent, plan);
    int played = 0;
    auto unit = std::make_unique<SequencedUnit>(fake);
    unit->setMIDIOutputEventBlock([&played](std::int64_t, std::uint8_t, int, const std::uint8_t*) {
        ++played;
        return noErr + 1;
    });
    EXPECT_EQ(fake->playMIDI(0, 0, {0x90, 1, 2}), noErr + 1);
    unit = nullptr;
    EXPECT_EQ(fake->playMIDI(0, 0, {0x90, 1, 2}), noErr);
    EXPECT_EQ(played, 1);
}

TEST_F(SequencedUnitTest, NothingIsTheInstrumentOfNoUnit)
{
    EXPECT_DEATH(SequencedUnit(nullptr), "");
}

TEST_F(SequencedUnitTest, ARenderingThreadTakesNoMemoryAndNoLock)
{
    Song song = busySong(6);
    const auto unit = std::make_shared<HeardUnit>(false);
    const auto sequenced = std::make_shared<SequencedUnit>(unit);
    HandEngine hand(sequenced);
    Song plain;
    for (int i = 0; i < 64; ++i) {
        plain.note(i / 16.0, i % 16, 60, 100, 0.5)
            .message(i / 16.0, 0xE0, i, i)
            .exclusive(i / 16.0, exclusiveOf(200));
    }
    ASSERT_EQ(sequenced->load(plain.tempo(0.0, 90.0).tempo(1.01, 200.0).file()).error(), "");
    sequenced->start();
    hand.render(512);
    {
        const RealtimeGuard guard;
        hand.render(140'000, 512);
    }
    EXPECT_TRUE(sequenced->hasEnded());
    EXPECT_GT(unit->count, 250);
}

TEST_F(SequencedUnitTest, OneThreadOperatesWhileAnotherPlays)
{
    const auto unit = std::make_shared<HeardUnit>(false);
    SequencedUnit sequenced(unit);
    const auto file = busySong(6).file();
    ASSERT_EQ(sequenced.load(file).error(), "");
    std::atomic<bool> isDone{false};
    std::thread renders([&] {
        std::array<float, 512> left{};
        std::array<float, 512> right{};
        while (!isDone) {
            sequenced.render(nullptr, nullptr, left.data(), right.data(), 300);
        }
    });
    for (int i = 0; i < 200; ++i) {
        sequenced.start();
        sequenced.pause();
        EXPECT_GE(sequenced.positionInBeats(), 0.0);
        sequenced.goOn();
        if (i % 10 == 0) {
            EXPECT_EQ(sequenced.load(file).error(), "");
        } else if (i % 3 == 0) {
            sequenced.stop();
        }
    }
    sequenced.start();
    while (!sequenced.hasEnded()) {
        std::this_thread::yield();
    }
    isDone = true;
    renders.join();
    EXPECT_FALSE(sequenced.isPlaying());
}

} // namespace

} // namespace volvelle::test
