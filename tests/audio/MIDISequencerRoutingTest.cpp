#include "tests/audio/TransportFixture.h"

namespace volvelle::test {
namespace {

class MIDISequencerRoutingTest : public TransportTest {
protected:
    void parse(const std::vector<std::uint8_t>& channels)
    {
        song(channels)->saveToFile(folder.path / "a.mid");
        transport->loadMIDIFileAndParse(folder.path / "a.mid");
        console.take();
    }

    void playSong()
    {
        bass.fake->takeHeard();
        lead.fake->takeHeard();
        transport->start();
        render(4 * framesToABeat);
    }

    // Takes the only track from its unit, and lets the render thread forget the old routes.
    void leaveUnit()
    {
        transport->connect(std::shared_ptr<AVAudioUnit>());
        transport->setTrackPort(0, lead.node);
        for (int i = 0; i < 3; ++i) {
            render(AUAudioUnit::maximumFrames);
            engine->collectGarbage();
        }
    }

    static std::string noteOn(int channel)
    {
        return concat(144 + channel, " ", 60 + channel, " 100 at ", 3 * framesToABeat);
    }

    Part bass = addUnit();
    const std::string measured = "lengthInSeconds: 2.0, lengthInBeats: 4.0";
};

TEST_F(MIDISequencerRoutingTest, AllTracksGoToOneUnitAndTheFirstIsLogged)
{
    transport->loadFromData(bytesOf(*song({0, 1})));
    console.take();
    transport->setTrackPorts(bass.node);
    EXPECT_EQ(console.take(), (Lines{"MIDISequencer::setTrackPorts()", " - track 0 " + measured}));
    EXPECT_EQ(transport->getBeats(), 4.0);
    EXPECT_EQ(transport->getLength(), 2.0);
    playSong();
    EXPECT_EQ(notes(bass), (Lines{noteOn(0), noteOn(1)}));
    EXPECT_EQ(notes(lead), Lines{});
}

TEST_F(MIDISequencerRoutingTest, LengthsOnlyGrowUntilAFileIsLoaded)
{
    transport->loadFromData(bytesOf(*song({0}, 8.0)));
    transport->setTrackPorts(lead.node);
    transport->loadFromData(bytesOf(*song({0}, 4.0)));
    console.take();
    transport->setTrackPorts(lead.node);
    EXPECT_EQ(console.take(), (Lines{"MIDISequencer::setTrackPorts()", " - track 0 " + measured}));
    EXPECT_EQ(transport->getBeats(), 8.0);
    EXPECT_EQ(transport->getLength(), 4.0);
}

TEST_F(MIDISequencerRoutingTest, TheTempoTrackPlaysNoPartInTheLengths)
{
    const auto sequence = song({0});
    sequence->setTempo(60.0, 32.0);
    transport->loadFromData(bytesOf(*sequence));
    transport->setTrackPorts(lead.node);
    EXPECT_EQ(transport->getBeats(), 4.0);
}

TEST_F(MIDISequencerRoutingTest, RoutingToOneUnitLeavesTheTempoTrackAlone)
{
    const auto before = bass.node.use_count();
    transport->loadFromData(bytesOf(*song({0})));
    transport->setTrackPorts(bass.node);
    leaveUnit();
    EXPECT_EQ(bass.node.use_count(), before);
}

TEST_F(MIDISequencerRoutingTest, AFileRoutesTheTempoTrackToTheConnectedUnitAsWell)
{
    const auto before = bass.node.use_count();
    song({0})->saveToFile(folder.path / "a.mid");
    transport->connect(bass.node);
    transport->loadMIDIFile(folder.path / "a.mid");
    leaveUnit();
    EXPECT_GT(bass.node.use_count(), before);
}

TEST_F(MIDISequencerRoutingTest, RoutingByChannelSendsTheTempoTrackToTheFirstUnit)
{
    parse({1});
    const auto before = bass.node.use_count();
    transport->setTrackPorts(std::vector{bass.node, lead.node});
    leaveUnit();
    EXPECT_GT(bass.node.use_count(), before);
}

TEST_F(MIDISequencerRoutingTest, EachTrackGoesToTheUnitOfItsChannel)
{
    parse({0, 1});
    transport->setTrackPorts(std::vector{lead.node, bass.node});
    EXPECT_EQ(console.take(), (Lines{measured, measured}));
    playSong();
    EXPECT_EQ(notes(lead), Lines{noteOn(0)});
    EXPECT_EQ(notes(bass), Lines{noteOn(1)});
}

TEST_F(MIDISequencerRoutingTest, ATrackBehindAGapOfChannelsStillGoesToTheUnitOfItsChannel)
{
    parse({2});
    const auto unused = addUnit();
    transport->setTrackPorts(std::vector{lead.node, unused.node, bass.node});
    playSong();
    EXPECT_EQ(notes(bass), Lines{noteOn(2)});
    EXPECT_EQ(notes(lead), Lines{});
}

TEST_F(MIDISequencerRoutingTest, AChannelAboveTheCountOfUnitsEndsTheRoutingAndWhatIsRoutedStays)
{
    parse({0, 5, 6});
    transport->setTrackPorts(std::vector{bass.node});
    EXPECT_EQ(
        console.take(),
        (Lines{
            measured, measured,
            "MIDISequencer::setTrackPorts() : ERROR: The unit count is smaller than the channel number."}));
    playSong();
    EXPECT_EQ(notes(bass), Lines{noteOn(0)});
}

TEST_F(MIDISequencerRoutingTest, ASingleTrackIsRouted)
{
    transport->loadFromData(bytesOf(*song({0, 1})));
    console.take();
    transport->setTrackPort(1, bass.node);
    EXPECT_EQ(console.take(), Lines{});
    playSong();
    EXPECT_EQ(notes(bass), Lines{noteOn(1)});
    EXPECT_EQ(notes(lead), Lines{});
}

TEST_F(MIDISequencerRoutingTest, ATrackOutOfTheSixteenChannelsIsAnErrorAndRoutesNothing)
{
    transport->loadFromData(bytesOf(*song({0})));
    console.take();
    transport->setTrackPort(16, bass.node);
    transport->setTrackPort(-1, bass.node);
    const std::string error = "MIDISequencer::setTrackPort() : ERROR: Channel out of index.";
    EXPECT_EQ(console.take(), (Lines{error, error}));
    playSong();
    EXPECT_EQ(notes(bass), Lines{});
}

TEST_F(MIDISequencerRoutingTest, ATrackBehindTheCountOfTracksIsAnError)
{
    transport->loadFromData(bytesOf(*song({0})));
    console.take();
    transport->setTrackPort(2, bass.node);
    EXPECT_EQ(console.take(),
              Lines{"MIDISequencer::setTrackPort() : ERROR: Track count is smaller than channel."});
}

} // namespace
} // namespace volvelle::test
