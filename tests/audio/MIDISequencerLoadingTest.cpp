#include "tests/audio/TransportFixture.h"

namespace volvelle::test {
namespace {

class MIDISequencerLoadingTest : public TransportTest {
protected:
    std::filesystem::path saved(MIDISequence16& sequence, const std::string& name = "a.mid")
    {
        const auto file = folder.path / name;
        sequence.saveToFile(file);
        console.take();
        return file;
    }

    const std::string engineGone = "MIDISequencer::connect() : WARNING: The engine was set to nil.";
    const std::string dataLoaded =
        "MIDISequencer::loadFromSequence() : The external sequencer was loaded with data.";
    const std::string unreadable = "The MIDI file could not be read (-10870).";
};

// Stops where no sequencer is.
class ReadyMIDISequencer : public MIDISequencer {
public:
    bool stop() override { return false; }
};

TEST_F(MIDISequencerLoadingTest, ConnectingWithoutAnEngineIsAWarningAndKeepsTheSequencer)
{
    transport->connect(std::shared_ptr<AVAudioEngine>());
    EXPECT_EQ(console.take(), Lines{engineGone});
    EXPECT_FALSE(transport->isPlaying());
}

TEST_F(MIDISequencerLoadingTest, ASecondEngineHasNoEffectOnTheSequencer)
{
    loadSong();
    transport->connect(std::make_shared<AVAudioEngine>());
    EXPECT_TRUE(transport->start());
    EXPECT_EQ(transport->getBeats(), 4.0);
}

TEST_F(MIDISequencerLoadingTest, AFileIsLoadedStraightIntoTheSequencer)
{
    const auto sequence = song({0, 3});
    sequence->createProgramChangeEvent(0.0, 3, 12);
    const auto file = saved(*sequence);
    transport->connect(lead.node);
    transport->loadMIDIFile(file);
    EXPECT_EQ(
        console.take(),
        (Lines{"MIDISequencer::loadMIDIFile() : The following file was loaded into the sequencer: " +
                   file.string(),
               "lengthInSeconds: 2.0, lengthInBeats: 4.0", "lengthInSeconds: 2.0, lengthInBeats: 4.0"}));
    EXPECT_THAT(lead.fake->calls, testing::Contains("prepare 12 on 3"));
    EXPECT_EQ(transport->getBeats(), 4.0);
    EXPECT_EQ(transport->sequences, nullptr);
    transport->start();
    render(4 * framesToABeat);
    EXPECT_EQ(notes(lead).size(), 2U);
}

TEST_F(MIDISequencerLoadingTest, WithoutAUnitAFileIsNeitherRoutedNorMeasured)
{
    transport->loadMIDIFile(saved(*song({0})));
    EXPECT_EQ(lines().size(), 1U);
    EXPECT_EQ(transport->getBeats(), 1.0);
    transport->start();
    render(4 * framesToABeat);
    EXPECT_EQ(notes(lead), Lines{});
}

TEST_F(MIDISequencerLoadingTest, AFileThatCannotBeLoadedIsToldAndTheContentStays)
{
    loadSong();
    transport->loadMIDIFile(folder.path / "none.mid");
    EXPECT_EQ(console.take(),
              Lines{"MIDISequencer::loadMIDIFile() : ERROR: The MIDI file could not be loaded: The "
                    "MIDI file could not be read (-43)."});
    EXPECT_EQ(transport->getBeats(), 1.0);
    transport->start();
    render(4 * framesToABeat);
    EXPECT_EQ(notes(lead).size(), 1U);
}

TEST_F(MIDISequencerLoadingTest, LoadingAFileStopsThePlaybackAndForgetsTheLengths)
{
    loadSong();
    transport->start();
    console.take();
    told();
    transport->loadMIDIFile(folder.write("rubbish.mid", "rubbish"));
    EXPECT_EQ(
        console.take(),
        (Lines{stopped[0],
               "MIDISequencer::loadMIDIFile() : ERROR: The MIDI file could not be loaded: " + unreadable}));
    EXPECT_EQ(told(), Lines{"stop"});
    EXPECT_EQ(transport->getLength(), 1.0);
    EXPECT_EQ(transport->getMelodicPatches(), std::vector<std::uint8_t>{0});
}

TEST_F(MIDISequencerLoadingTest, DataAreLoadedAndTheirTracksPrinted)
{
    transport->loadFromData(bytesOf(*song({0, 1, 9})));
    EXPECT_EQ(console.take(), (Lines{dataLoaded, "[AVMusicTrack, AVMusicTrack, AVMusicTrack]"}));
    EXPECT_EQ(transport->getBeats(), 1.0);
    EXPECT_EQ(transport->getMelodicPatches(), std::vector<std::uint8_t>{});
}

TEST_F(MIDISequencerLoadingTest, DataThatAreNoFileAreToldUnderTheNameOfTheOtherOperation)
{
    transport->loadFromData({1, 2, 3});
    EXPECT_EQ(console.take(),
              Lines{"MIDISequencer::loadFromSequence() : ERROR: The external sequencer could not "
                    "load Data. Status: " +
                    unreadable});
}

TEST_F(MIDISequencerLoadingTest, ASequenceIsPlayedFromItsBytesAndNotKept)
{
    transport->loadFromSequence(song({0}));
    EXPECT_EQ(lines(), (Lines{dataLoaded, "[AVMusicTrack]"}));
    EXPECT_EQ(transport->sequences, nullptr);
    transport->setTrackPorts(lead.node);
    EXPECT_EQ(transport->getBeats(), 4.0);
}

TEST_F(MIDISequencerLoadingTest, ASequenceThatGivesNoBytesIsToldAndLoadsNothing)
{
    const auto sequence = song({0});
    console.take();
    setFault(MusicSequenceOperation::MusicSequenceFileCreateData, {.status = -7});
    transport->loadFromSequence(sequence);
    EXPECT_EQ(
        console.take(),
        (Lines{"MIDISequencer::sequenceData() : Error: Could not convert music sequence to data. Status: -7",
               "MIDISequencer::loadFromSequence() : ERROR: Could not receive data from music sequence."}));
}

TEST_F(MIDISequencerLoadingTest, WhereNoSequencerIsLoadingAFileEndsEarly)
{
    ReadyMIDISequencer ready;
    ready.loadMIDIFile("a.mid");
    EXPECT_EQ(console.take(), Lines{});
    ready.loadMIDIFileAndParse("a.mid");
    EXPECT_EQ(console.take(), Lines{"MIDISequencer::loadMIDIFileAndParse() : ERROR: sequencer is nil"});
    EXPECT_EQ(ready.sequences, nullptr);
}

} // namespace
} // namespace volvelle::test
