#include "tests/audio/TransportFixture.h"

namespace volvelle::test {
namespace {

class MIDISequencerParsingTest : public TransportTest {
protected:
    std::filesystem::path savedSong()
    {
        const auto sequence = song({0, 1});
        sequence->createProgramChangeEvent(0.0, 0, 5);
        sequence->createProgramChangeEvent(0.0, 1, 5);
        sequence->createProgramChangeEvent(1.0, 1, 9);
        const auto file = folder.path / "a.mid";
        sequence->saveToFile(file);
        console.take();
        return file;
    }

    const std::string prefix = "MIDISequencer::loadMIDIFileAndParse() : ";
};

TEST_F(MIDISequencerParsingTest, WhatIsPlayedIsWhatTheSequenceMadeOfTheFile)
{
    transport->connect(lead.node);
    transport->loadMIDIFileAndParse(savedSong());
    EXPECT_EQ(lines(), (Lines{prefix + "The external sequencer was loaded with data.",
                              "lengthInSeconds: 2.0, lengthInBeats: 4.0",
                              "lengthInSeconds: 2.0, lengthInBeats: 4.0"}));
    EXPECT_THAT(lead.fake->calls,
                testing::IsSupersetOf({"prepare 5 on 0", "prepare 5 on 1", "prepare 9 on 1"}));
    ASSERT_NE(transport->sequences, nullptr);
    EXPECT_EQ(transport->sequences->delegate.lock(), transport);
    lead.fake->takeHeard();
    transport->start();
    render(4 * framesToABeat);
    EXPECT_EQ(notes(lead), (Lines{concat("144 60 100 at ", 3 * framesToABeat),
                                  concat("145 61 100 at ", 3 * framesToABeat)}));
}

TEST_F(MIDISequencerParsingTest, WithoutAUnitAParsedFileIsNotRouted)
{
    transport->loadMIDIFileAndParse(savedSong());
    EXPECT_EQ(lines(), Lines{prefix + "The external sequencer was loaded with data."});
    EXPECT_EQ(transport->getBeats(), 1.0);
}

TEST_F(MIDISequencerParsingTest, DistinctProgramsAreNotedBehindAZero)
{
    EXPECT_EQ(transport->getMelodicPatches(), std::vector<std::uint8_t>{});
    EXPECT_EQ(transport->getRhythmicPatches(), std::vector<std::uint8_t>{});
    transport->loadMIDIFileAndParse(savedSong());
    EXPECT_EQ(transport->getMelodicPatches(), (std::vector<std::uint8_t>{0, 5, 9}));
    EXPECT_EQ(transport->getRhythmicPatches(), std::vector<std::uint8_t>{0});
}

TEST_F(MIDISequencerParsingTest, TheLastProgramOfEachChannelIsItsPatch)
{
    transport->loadMIDIFileAndParse(savedSong());
    EXPECT_EQ(transport->getPatch(0), 5);
    EXPECT_EQ(transport->getPatch(1), 9);
    EXPECT_EQ(transport->getPatch(2), 0);
    EXPECT_EQ(transport->getPatch(15), 0);
    EXPECT_EQ(transport->getPatch(16), 0);
    EXPECT_EQ(transport->getPatch(-1), 0);
}

TEST_F(MIDISequencerParsingTest, ARhythmProgramCountsAsAMelodicOne)
{
    transport->foundProgramChangeEvent(std::make_shared<MidiProgramChangeEvent>(0.0, 9, 25));
    EXPECT_EQ(transport->getMelodicPatches(), std::vector<std::uint8_t>{25});
    EXPECT_EQ(transport->getRhythmicPatches(), std::vector<std::uint8_t>{});
    EXPECT_EQ(transport->getPatch(9), 25);
}

TEST_F(MIDISequencerParsingTest, ANewFileForgetsTheProgramsOfTheLast)
{
    transport->loadMIDIFileAndParse(savedSong());
    const auto plain = folder.path / "b.mid";
    song({0})->saveToFile(plain);
    transport->loadMIDIFileAndParse(plain);
    EXPECT_EQ(transport->getMelodicPatches(), std::vector<std::uint8_t>{0});
    EXPECT_EQ(transport->getPatch(1), 0);
}

TEST_F(MIDISequencerParsingTest, AFileThatGivesNoBytesIsToldAndLoadsNothing)
{
    const auto file = savedSong();
    transport->connect(lead.node);
    setFault(MusicSequenceOperation::MusicSequenceFileCreateData, {.status = -7});
    transport->loadMIDIFileAndParse(file);
    EXPECT_EQ(
        lines(),
        (Lines{"MIDISequencer::sequenceData() : Error: Could not convert music sequence to data. Status: -7",
               prefix + "ERROR: Could not receive data from music sequence."}));
    EXPECT_EQ(transport->getBeats(), 1.0);
    EXPECT_NE(transport->sequences, nullptr);
}

TEST_F(MIDISequencerParsingTest, BytesThatTheSequencerRefusesAreTold)
{
    const auto file = savedSong();
    transport->connect(lead.node);
    setFault(MusicSequenceOperation::MusicSequenceFileCreateData, {});
    transport->loadMIDIFileAndParse(file);
    EXPECT_EQ(lines(),
              Lines{prefix + "ERROR: The external sequencer could not load Data. Status: The MIDI file could "
                             "not be read (-10870)."});
    EXPECT_EQ(transport->getBeats(), 1.0);
}

TEST_F(MIDISequencerParsingTest, AFileThatIsNotThereGivesAnEmptySequence)
{
    transport->loadMIDIFileAndParse(folder.path / "none.mid");
    EXPECT_EQ(lines(), Lines{prefix + "The external sequencer was loaded with data."});
    EXPECT_EQ(transport->sequences->getNumberOfTracks(), 16);
}

TEST_F(MIDISequencerParsingTest, LoadingStopsThePlayback)
{
    loadSong();
    transport->start();
    told();
    transport->loadMIDIFileAndParse(savedSong());
    EXPECT_FALSE(transport->isPlaying());
    EXPECT_EQ(told(), Lines{"stop"});
}

TEST_F(MIDISequencerParsingTest, EveryOtherEventIsPassedOver)
{
    transport->foundNoteEvent(nullptr);
    transport->foundControllerEvent(nullptr);
    transport->foundTempoEvent(nullptr);
    transport->foundMetaEvent(nullptr);
    transport->foundUnknownEvent(nullptr);
    EXPECT_EQ(transport->getMelodicPatches(), std::vector<std::uint8_t>{});
}

} // namespace
} // namespace volvelle::test
