#include "tests/audio/TransportFixture.h"

namespace volvelle::test {
namespace {

class MIDISequencerTimerTest : public TransportTest {
protected:
    static constexpr double tick = 0.031; // a little over the interval
    static constexpr double interval = 0.03;

    void SetUp() override
    {
        loadSong();
        transport->start();
        console.take();
        told();
    }
};

TEST_F(MIDISequencerTimerTest, ProgressIsToldAtEachTickAndNotBefore)
{
    transport->setPosition(1.5F);
    clock.advance(0.029);
    EXPECT_EQ(told(), Lines{});
    clock.advance(0.0011);
    EXPECT_EQ(told(), Lines{"1.5 of 4.0"});
    transport->setPosition(2.0F);
    clock.advance(interval);
    EXPECT_EQ(told(), Lines{"2.0 of 4.0"});
    EXPECT_EQ(console.take(), Lines{});
}

TEST_F(MIDISequencerTimerTest, ALateTickComesOnce)
{
    clock.advance(10.0);
    EXPECT_EQ(told(), Lines{"0.0 of 4.0"});
}

TEST_F(MIDISequencerTimerTest, ProgressGoesOnDuringAPauseWithAnUnchangingPosition)
{
    transport->setPosition(1.5F);
    transport->pause();
    told();
    clock.advance(tick);
    clock.advance(interval);
    EXPECT_EQ(told(), (Lines{"1.5 of 4.0", "1.5 of 4.0"}));
}

TEST_F(MIDISequencerTimerTest, AStopEndsTheTicks)
{
    transport->stop();
    told();
    clock.advance(tick);
    EXPECT_EQ(told(), Lines{});
}

TEST_F(MIDISequencerTimerTest, GoingOnReplacesTheTimer)
{
    transport->pause();
    transport->play();
    told();
    clock.advance(tick);
    EXPECT_EQ(told(), Lines{"0.0 of 4.0"});
}

TEST_F(MIDISequencerTimerTest, TheFirstTickAtTheEndStopsAndCompletesInThisOrder)
{
    transport->setPosition(4.0F);
    clock.advance(tick);
    EXPECT_EQ(told(), (Lines{"stop", "complete"}));
    EXPECT_FALSE(transport->isPlaying());
    EXPECT_EQ(transport->getPosition(), 0.0);
    EXPECT_EQ(console.take(), stopped);
    clock.advance(tick);
    EXPECT_EQ(told(), Lines{});
}

TEST_F(MIDISequencerTimerTest, ASongThatIsPlayedToItsEndCompletes)
{
    Lines calls;
    for (int i = 0; i < 100 && transport->isPlaying(); ++i) {
        render(1440);
        clock.advance(interval);
        for (const std::string& call : told()) {
            calls.push_back(call);
        }
    }
    ASSERT_GT(calls.size(), 60U);
    EXPECT_EQ(Lines(calls.end() - 2, calls.end()), (Lines{"stop", "complete"}));
    EXPECT_EQ(std::ranges::count(calls, "complete"), 1);
}

TEST_F(MIDISequencerTimerTest, ATickPastTheEndOfAPausedTransportCompletesWithoutAStop)
{
    transport->pause();
    transport->setPosition(5.0F);
    console.take();
    told();
    clock.advance(tick);
    EXPECT_EQ(told(), Lines{"complete"});
    EXPECT_EQ(console.take(), Lines{});
}

TEST_F(MIDISequencerTimerTest, WithoutAnyLengthTheFirstTickEndsThePlayback)
{
    const auto fresh = MIDISequencer::make();
    fresh->delegate = listener;
    fresh->connect(engine);
    fresh->start();
    EXPECT_EQ(fresh->getBeats(), 1.0);
    EXPECT_EQ(fresh->getLength(), 1.0);
    transport->stop();
    told();
    clock.advance(tick);
    EXPECT_EQ(told(), (Lines{"stop", "complete"}));
}

TEST_F(MIDISequencerTimerTest, AFileOfANoteWithoutLengthEndsWithTheFirstTickHeardOrNot)
{
    MIDISequence16 song;
    song.createNoteEvent(0.0, 0, 60, 100, 0, 0.0F);
    for (const bool isRendered : {false, true}) {
        const auto fresh = MIDISequencer::make();
        fresh->delegate = listener;
        fresh->connect(engine);
        fresh->loadFromData(bytesOf(song));
        fresh->setTrackPorts(lead.node);
        transport->stop();
        told();
        notes(lead);
        fresh->start();
        render(isRendered ? 512 : 0);
        clock.advance(tick);
        render(512);
        EXPECT_EQ(told(), (Lines{"play", "stop", "complete"}));
        EXPECT_EQ(notes(lead).size(), isRendered ? 2U : 0U);
    }
}

TEST_F(MIDISequencerTimerTest, TheTotalIsThatOfTheMomentInWhichTheCallRuns)
{
    transport->onTimer();
    EXPECT_EQ(listener->calls, Lines{});
    transport->loadFromData(bytesOf(*song({0}, 8.0)));
    transport->setTrackPorts(lead.node);
    EXPECT_EQ(told(), Lines{"0.0 of 8.0"});
}

TEST_F(MIDISequencerTimerTest, WithoutADelegateATickStillEndsThePlayback)
{
    listener.reset();
    transport->setPosition(2.0F);
    transport->onTimer();
    EXPECT_TRUE(transport->isPlaying());
    transport->setPosition(4.0F);
    transport->onTimer();
    EXPECT_FALSE(transport->isPlaying());
}

TEST_F(MIDISequencerTimerTest, TheTimerEndsWithTheTransport)
{
    EXPECT_TRUE(mainRunLoop().nextFire());
    transport.reset();
    EXPECT_FALSE(mainRunLoop().nextFire());
    clock.advance(tick);
    EXPECT_EQ(told(), Lines{});
}

} // namespace
} // namespace volvelle::test
