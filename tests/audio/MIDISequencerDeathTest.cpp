#include "tests/audio/TransportFixture.h"

#include <functional>

namespace volvelle::test {
namespace {

class MIDISequencerDeathTest : public TransportTest {
protected:
    const std::string none{nilMessage};
    const std::string outside{indexMessage};
};

TEST_F(MIDISequencerDeathTest, WithoutASequencerWhatNeedsItStopsTheProgram)
{
    const auto bare = MIDISequencer::make();
    EXPECT_DEATH(bare->isPlaying(), none);
    EXPECT_DEATH(bare->start(), none);
    EXPECT_DEATH(bare->pause(), none);
    EXPECT_DEATH(bare->play(), none);
    EXPECT_DEATH(bare->stop(), none);
    EXPECT_DEATH(bare->getPosition(), none);
    EXPECT_DEATH(bare->getTime(), none);
    EXPECT_DEATH(bare->getInfo(), none);
    EXPECT_DEATH(bare->setTempo(1.0F), none);
    EXPECT_DEATH(bare->setPosition(1.0F), none);
    EXPECT_DEATH(bare->onTimer(), none);
}

TEST_F(MIDISequencerDeathTest, WithoutASequencerLoadingAndRoutingStopTheProgram)
{
    const auto bare = MIDISequencer::make();
    EXPECT_DEATH(bare->loadMIDIFile("a.mid"), none);
    EXPECT_DEATH(bare->loadMIDIFileAndParse("a.mid"), none);
    EXPECT_DEATH(bare->loadFromData({}), none);
    EXPECT_DEATH(bare->loadFromSequence(song({0})), none);
    EXPECT_DEATH(bare->setTrackPorts(lead.node), none);
    EXPECT_DEATH(bare->setTrackPorts(std::vector{lead.node}), none);
    EXPECT_DEATH(bare->setTrackPort(0, lead.node), none);
}

TEST_F(MIDISequencerDeathTest, ASequenceThatIsNotThereStopsTheProgram)
{
    EXPECT_DEATH(transport->loadFromSequence(nullptr), none);
    const auto sequence = song({0});
    sequence->setMusicSequence(nullptr);
    EXPECT_DEATH(transport->loadFromSequence(sequence), none);
}

TEST_F(MIDISequencerDeathTest, RoutingByChannelWithoutAnyUnitStopsTheProgramAtTheTempoTrack)
{
    EXPECT_DEATH(transport->setTrackPorts(std::vector<std::shared_ptr<AVAudioUnit>>{}), outside);
}

TEST_F(MIDISequencerDeathTest, RoutingByChannelWithoutAParsedSequenceStopsTheProgram)
{
    transport->loadFromData(bytesOf(*song({0})));
    EXPECT_DEATH(transport->setTrackPorts(std::vector{lead.node}), none);
}

TEST_F(MIDISequencerDeathTest, AsManyUnitsAsTheChannelsNumberPassTheTestAndStopTheProgram)
{
    song({1})->saveToFile(folder.path / "a.mid");
    transport->loadMIDIFileAndParse(folder.path / "a.mid");
    EXPECT_DEATH(transport->setTrackPorts(std::vector{lead.node}), outside);
}

TEST_F(MIDISequencerDeathTest, AsManyTracksAsTheChannelsNumberPassTheTestAndStopTheProgram)
{
    transport->loadFromData(bytesOf(*song({0})));
    EXPECT_DEATH(transport->setTrackPort(1, lead.node), outside);
}

TEST_F(MIDISequencerDeathTest, AProgramOnAChannelThatIsNotThereStopsTheProgram)
{
    EXPECT_DEATH(transport->foundProgramChangeEvent(std::make_shared<MidiProgramChangeEvent>(0.0, 16, 5)),
                 outside);
    EXPECT_DEATH(transport->foundProgramChangeEvent(nullptr), none);
}

} // namespace
} // namespace volvelle::test
