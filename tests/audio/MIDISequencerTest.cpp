#include "tests/audio/TransportFixture.h"

namespace volvelle::test {
namespace {

class MIDISequencerTest : public TransportTest {
protected:
    void SetUp() override { loadSong(); }

    static Lines both(Lines first, const Lines& second)
    {
        first.insert(first.end(), second.begin(), second.end());
        return first;
    }

    bool isTicking() const { return mainRunLoop().nextFire().has_value(); }
};

TEST_F(MIDISequencerTest, AStoppedTransportStartsFromTheBeginning)
{
    transport->setPosition(2.5F);
    EXPECT_TRUE(transport->start());
    EXPECT_TRUE(transport->isPlaying());
    EXPECT_EQ(transport->getPosition(), 0.0);
    EXPECT_TRUE(isTicking());
    EXPECT_EQ(console.take(), playing);
    EXPECT_EQ(told(), Lines{"play"});
}

TEST_F(MIDISequencerTest, AStoppedTransportPlaysFromTheLastPause)
{
    transport->setPosition(2.5F);
    transport->pause();
    transport->setPosition(1.0F);
    console.take();
    EXPECT_TRUE(transport->play());
    EXPECT_TRUE(transport->isPlaying());
    EXPECT_EQ(transport->getPosition(), 2.5);
    EXPECT_TRUE(isTicking());
    EXPECT_EQ(console.take(), continuing);
    EXPECT_EQ(told(), Lines{"play"});
}

TEST_F(MIDISequencerTest, StartingDuringPlaybackStopsFirst)
{
    transport->start();
    transport->setPosition(3.0F);
    console.take();
    told();
    EXPECT_TRUE(transport->start());
    EXPECT_EQ(transport->getPosition(), 0.0);
    EXPECT_EQ(console.take(), both(stopped, playing));
    EXPECT_EQ(told(), (Lines{"stop", "play"}));
    EXPECT_TRUE(isTicking());
}

TEST_F(MIDISequencerTest, PlayingDuringPlaybackJumpsToTheLastPause)
{
    transport->start();
    transport->setPosition(2.0F);
    transport->pause();
    transport->start();
    transport->setPosition(3.5F);
    console.take();
    told();
    EXPECT_TRUE(transport->play());
    EXPECT_EQ(transport->getPosition(), 2.0);
    EXPECT_EQ(console.take(), both(stopped, continuing));
    EXPECT_EQ(told(), (Lines{"stop", "play"}));
}

TEST_F(MIDISequencerTest, APauseHoldsThePositionAndKeepsTheTimer)
{
    transport->start();
    transport->setPosition(1.5F);
    console.take();
    told();
    EXPECT_TRUE(transport->pause());
    EXPECT_FALSE(transport->isPlaying());
    EXPECT_EQ(transport->getPosition(), 1.5);
    EXPECT_TRUE(isTicking());
    EXPECT_EQ(console.take(), paused);
    EXPECT_EQ(told(), Lines{"pause"});
    EXPECT_TRUE(transport->start());
    EXPECT_EQ(transport->getPosition(), 0.0);
    EXPECT_EQ(told(), Lines{"play"});
}

TEST_F(MIDISequencerTest, APausedTransportContinuesWhereItWas)
{
    transport->start();
    transport->setPosition(1.5F);
    transport->pause();
    told();
    EXPECT_TRUE(transport->play());
    EXPECT_EQ(transport->getPosition(), 1.5);
    EXPECT_EQ(told(), Lines{"play"});
}

TEST_F(MIDISequencerTest, PausingAStoppedTransportSendsNothingAndNotesThePosition)
{
    transport->setPosition(1.5F);
    EXPECT_TRUE(transport->pause());
    EXPECT_EQ(console.take(), paused);
    EXPECT_EQ(told(), Lines{});
    EXPECT_FALSE(isTicking());
    transport->start();
    transport->stop();
    transport->pause();
    transport->play();
    EXPECT_EQ(transport->getPosition(), 0.0);
}

TEST_F(MIDISequencerTest, StoppingEndsPlaybackAndTimerAndGoesBackToTheBeginning)
{
    transport->start();
    transport->setPosition(1.5F);
    console.take();
    told();
    EXPECT_TRUE(transport->stop());
    EXPECT_FALSE(transport->isPlaying());
    EXPECT_EQ(transport->getPosition(), 0.0);
    EXPECT_FALSE(isTicking());
    EXPECT_EQ(console.take(), stopped);
    EXPECT_EQ(told(), Lines{"stop"});
}

TEST_F(MIDISequencerTest, StoppingAStoppedTransportDoesNothing)
{
    transport->setPosition(1.5F);
    EXPECT_FALSE(transport->stop());
    EXPECT_EQ(transport->getPosition(), 1.5);
    EXPECT_EQ(console.take(), Lines{});
    EXPECT_EQ(told(), Lines{});
}

TEST_F(MIDISequencerTest, StoppingAPausedTransportLeavesItPausedWithItsTimer)
{
    transport->start();
    transport->setPosition(1.5F);
    transport->pause();
    console.take();
    told();
    EXPECT_FALSE(transport->stop());
    EXPECT_EQ(transport->getPosition(), 1.5);
    EXPECT_TRUE(isTicking());
    EXPECT_EQ(console.take(), Lines{});
    EXPECT_EQ(told(), Lines{});
}

TEST_F(MIDISequencerTest, APauseIsRememberedAcrossAStartAndAStop)
{
    transport->loadFromData(bytesOf(*song({0}, 16.0)));
    transport->setTrackPorts(lead.node);
    transport->start();
    transport->setPosition(8.0F);
    transport->pause();
    transport->start();
    transport->stop();
    transport->play();
    EXPECT_EQ(transport->getPosition(), 8.0);
}

TEST_F(MIDISequencerTest, AStartThatFailsIsToldAndChangesNoState)
{
    engine->stop();
    EXPECT_FALSE(transport->start());
    EXPECT_FALSE(transport->isPlaying());
    EXPECT_FALSE(isTicking());
    EXPECT_EQ(console.take(),
              Lines{"MIDISequencer::start() : Error: The sequencer could not be started: " + notRunning});
    EXPECT_EQ(told(), Lines{});
}

TEST_F(MIDISequencerTest, APlayThatFailsGoesBackToTheBeginningAndRemembersThePause)
{
    transport->setPosition(2.0F);
    transport->pause();
    engine->stop();
    console.take();
    EXPECT_FALSE(transport->play());
    EXPECT_EQ(
        console.take(),
        Lines{"MIDISequencer::play() : Error: The sequencer could not be started. Status: " + notRunning});
    EXPECT_EQ(transport->getPosition(), 0.0);
    EXPECT_EQ(told(), Lines{});
    startEngine();
    EXPECT_TRUE(transport->play());
    EXPECT_EQ(transport->getPosition(), 2.0);
}

TEST_F(MIDISequencerTest, TheUnitHearsEachNoteAtItsFrame)
{
    lead.fake->takeHeard();
    transport->start();
    render(5 * framesToABeat);
    EXPECT_EQ(notes(lead), (Lines{concat("144 60 100 at ", 3 * framesToABeat),
                                  concat("128 60 0 at ", 4 * framesToABeat)}));
    EXPECT_NEAR(transport->getTime(), 2.5, 1e-6);
}

TEST_F(MIDISequencerTest, PositionAndTimeGrowWhileItPlays)
{
    transport->start();
    render(framesToABeat);
    EXPECT_NEAR(transport->getPosition(), 1.0, 1e-6);
    EXPECT_NEAR(transport->getTime(), 0.5, 1e-6);
}

TEST_F(MIDISequencerTest, TheTempoIsAFactor)
{
    transport->setTempo(2.0F);
    transport->start();
    render(framesToABeat);
    EXPECT_NEAR(transport->getPosition(), 2.0, 1e-6);
}

TEST_F(MIDISequencerTest, LengthAndBeatsAreThoseOfTheLongestTrack)
{
    EXPECT_EQ(transport->getLength(), 2.0);
    EXPECT_EQ(transport->getBeats(), 4.0);
}

TEST_F(MIDISequencerTest, WithoutAnyLengthTheyAreOne)
{
    const auto fresh = MIDISequencer::make();
    EXPECT_EQ(fresh->getLength(), 1.0);
    EXPECT_EQ(fresh->getBeats(), 1.0);
}

TEST_F(MIDISequencerTest, TheInformationIsThatOfTheSequence)
{
    const PropertyDictionary info = transport->getInfo();
    ASSERT_TRUE(info.contains("tempo"));
    EXPECT_EQ(info.at("tempo"), PropertyValue{120.0});
}

TEST_F(MIDISequencerTest, APositionAtTheVeryEndIsNotPastIt)
{
    transport->setPosition(4.0F);
    EXPECT_EQ(transport->getPosition(), 4.0);
    EXPECT_EQ(console.take(), Lines{});
}

TEST_F(MIDISequencerTest, APositionPastTheLengthIsResetEvenWhereItDoesNotPlay)
{
    transport->setPosition(4.5F);
    EXPECT_EQ(transport->getPosition(), 0.0);
    EXPECT_EQ(console.take(), Lines{"MIDISequencer::getPosition() : The sequencer has been finished."});
    EXPECT_EQ(told(), Lines{});
}

TEST_F(MIDISequencerTest, APositionPastTheLengthStopsAPlayingTransport)
{
    transport->start();
    console.take();
    told();
    transport->setPosition(4.5F);
    EXPECT_EQ(transport->getPosition(), 0.0);
    EXPECT_FALSE(transport->isPlaying());
    EXPECT_EQ(console.take(),
              both(stopped, {"MIDISequencer::getPosition() : The sequencer has been finished."}));
    EXPECT_EQ(told(), Lines{"stop"});
}

TEST_F(MIDISequencerTest, TheDelegateIsNeverCalledInsideTheOperation)
{
    transport->start();
    transport->pause();
    transport->play();
    transport->stop();
    EXPECT_EQ(listener->calls, Lines{});
    EXPECT_EQ(told(), (Lines{"play", "pause", "play", "stop"}));
}

TEST_F(MIDISequencerTest, WithoutADelegateNothingIsQueued)
{
    listener.reset();
    const std::weak_ptr<MIDISequencer> held = transport;
    transport->start();
    transport->pause();
    transport->play();
    transport->stop();
    transport.reset();
    EXPECT_TRUE(held.expired());
}

TEST_F(MIDISequencerTest, ADelegateThatIsGoneWhenItsCallComesHearsNothing)
{
    transport->start();
    const std::weak_ptr<TransportListener> gone = listener;
    listener.reset();
    EXPECT_TRUE(gone.expired());
    mainQueue().drain();
    EXPECT_TRUE(transport->isPlaying());
}

TEST_F(MIDISequencerTest, ADelegateThatIsSetMeanwhileGetsTheCall)
{
    const auto other = std::make_shared<TransportListener>();
    transport->start();
    transport->delegate = other;
    EXPECT_EQ(told(), Lines{});
    EXPECT_EQ(other->calls, Lines{"play"});
}

TEST_F(MIDISequencerTest, AQueuedCallKeepsTheTransportUntilItHasRun)
{
    transport->start();
    const std::weak_ptr<MIDISequencer> held = transport;
    transport.reset();
    EXPECT_FALSE(held.expired());
    EXPECT_EQ(told(), Lines{"play"});
    EXPECT_TRUE(held.expired());
}

TEST_F(MIDISequencerTest, ATransportThatIsLetGoFallsSilent)
{
    lead.fake->takeHeard();
    transport->start();
    told();
    render(3 * framesToABeat + 1000);
    transport.reset();
    render(2 * framesToABeat);
    const Lines heard = notes(lead);
    ASSERT_EQ(heard.size(), 2U);
    EXPECT_EQ(heard[0], concat("144 60 100 at ", 3 * framesToABeat));
    EXPECT_EQ(heard[1], concat("128 60 0 at ", 3 * framesToABeat + 1000));
}

} // namespace
} // namespace volvelle::test
