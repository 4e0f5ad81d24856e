#include "tests/MIDISequences/realtime/SequencerProbe.h"
#include "tests/support/ConsoleCapture.h"
#include "tests/support/Stops.h"
#include "tests/support/TemporaryFolder.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <cstdlib>
#include <utility>

namespace volvelle::test {

namespace {

using testing::Contains;
using testing::ElementsAre;
using testing::IsEmpty;
using testing::Not;

// One note of half a beat at beat 1 and, where `length` is more, a controller at that beat.
Bytes fileOf(std::uint8_t channel, std::uint8_t key, std::uint8_t controllerAt = 0)
{
    const auto status = [channel](int kind) { return static_cast<std::uint8_t>(kind + channel); };
    Bytes track{0x60, status(0x90), key, 100, 0x30, status(0x80), key, 64};
    if (controllerAt > 0) {
        track.insert(track.end(),
                     {static_cast<std::uint8_t>((controllerAt * 0x60) - 0x90), status(0xB0), 7, 9});
    }
    track.insert(track.end(), {0, 0xFF, 0x2F, 0});
    Bytes file{'M', 'T', 'h', 'd', 0, 0, 0, 6, 0, 0, 0, 1, 0, 0x60, 'M', 'T', 'r', 'k', 0, 0, 0};
    file.push_back(static_cast<std::uint8_t>(track.size()));
    file.insert(file.end(), track.begin(), track.end());
    return file;
}

StampedEvents listOf(const AUMIDISequencer& sequencer)
{
    StampedEvents result;
    for (const auto& event : sequencer.getEventList()) {
        result.push_back({event->event().eventSampleTime, event->array()});
    }
    return result;
}

StampedEvents notesOf(const AUMIDISequencer& sequencer)
{
    StampedEvents result = listOf(sequencer);
    std::erase_if(result, [](const Stamped& event) { return event.bytes[0] == 0xFD; });
    return result;
}

class AskedMixer : public MIDIPhraseMixer {
public:
    std::vector<std::pair<int, std::filesystem::path>> asked;

    void loadTrack(int track, const std::filesystem::path& url) override { asked.emplace_back(track, url); }
};

class AUMIDISequencerLoading : public testing::Test {
protected:
    TemporaryFolder folder;
    SequencerProbe sequencer;
    ConsoleCapture console;
    std::filesystem::path first = folder.write("first.mid", fileOf(0, 60));
    std::filesystem::path second = folder.write("second.mid", fileOf(3, 72, 2));
};

const StampedEvents firstNotes{{24000, {0x90, 60, 100}}, {36000, {0x80, 60, 64}}};
const StampedEvents secondNotes{{24000, {0x93, 72, 100}}, {36000, {0x83, 72, 64}}, {48000, {0xB3, 7, 9}}};

} // namespace

TEST_F(AUMIDISequencerLoading, AFileLoadedByForceIsInUseAtOnce)
{
    sequencer.setTempoFactor(3.0);
    const auto before = sequencer.sequence();
    sequencer.loadMIDIFile(first, true);

    EXPECT_EQ(notesOf(sequencer), firstNotes);
    EXPECT_EQ(sequencer.currentFile, first);
    EXPECT_EQ(sequencer.getTempoFactor(), 1.0);
    EXPECT_NE(sequencer.sequence(), before);
    EXPECT_EQ(sequencer.getDurationInSamples(), 36000);
    EXPECT_EQ(sequencer.getDurationInBeats(), 1.5);
    EXPECT_THAT(sequencer.listener->calls, ElementsAre("loaded"));
    EXPECT_EQ(sequencer.getEventList().front()->event().cable, 1);
    const auto lines = console.take();
    EXPECT_THAT(
        std::vector(lines.begin(), lines.begin() + 4),
        ElementsAre("AUMIDISequencer::stop()", "AUMIDISequencer::seek(0.0)",
                    "AUMIDISequencer: The following MIDI file will be loaded and parsed: " + first.string(),
                    "AUMIDISequencer::seek(0.0)"));
}

TEST_F(AUMIDISequencerLoading, NoFileIsTold)
{
    sequencer.loadMIDIFile(std::nullopt, true);

    EXPECT_THAT(console.take(), ElementsAre("AUMIDISequencer::stop()", "AUMIDISequencer::seek(0.0)",
                                            "AUMIDISequencer::ERROR: The current file URL is nil."));
    EXPECT_EQ(sequencer.currentFile, std::nullopt);
}

TEST_F(AUMIDISequencerLoading, AMissingFileIsToldAndForgotten)
{
    for (const bool force : {true, false}) {
        sequencer.loadMIDIFile(folder.path / "none.mid", force);

        EXPECT_THAT(console.take(),
                    ElementsAre("AUMIDISequencer::stop()", "AUMIDISequencer::seek(0.0)",
                                "AUMIDISequencer::ERROR: The given MIDI file (" +
                                    (folder.path / "none.mid").string() + " does not exist."));
        EXPECT_EQ(sequencer.currentFile, std::nullopt);
        EXPECT_FALSE(sequencer.isPlaying());
    }
}

TEST_F(AUMIDISequencerLoading, AFilePutOffIsInUseWhereTheFileStartsOver)
{
    sequencer.loadMIDIFile(first, true);
    sequencer.isLooping = true;
    sequencer.loadMIDIFile(second, false);
    EXPECT_FALSE(sequencer.isPlaying());
    EXPECT_EQ(notesOf(sequencer), firstNotes);
    sequencer.startClean(1000);
    sequencer.listener->calls.clear();
    sequencer.play(1000, 30000);
    EXPECT_EQ(notesOf(sequencer), firstNotes);
    const auto before = sequencer.sequence();
    sequencer.play(31000, 30000);

    EXPECT_EQ(notesOf(sequencer), secondNotes);
    EXPECT_NE(sequencer.sequence(), before);
    EXPECT_THAT(sequencer.listener->calls, ElementsAre("loop 1", "loaded"));
    EXPECT_EQ(sequencer.getDurationInSamples(), 48000);
    EXPECT_EQ(sequencer.getCurrentPositionInSamples(), 0);
    const StampedEvents next = sequencer.play(61000, 30000);
    EXPECT_THAT(next, Contains(Stamped{85000, {0x93, 72, 100}}));
    sequencer.play(91000, 30000);
    EXPECT_THAT(sequencer.listener->calls, ElementsAre("loop 1", "loaded", "loop 1"));
}

TEST_F(AUMIDISequencerLoading, AFilePutOffTakesTheRateOfTheRequestAndTheChannelOfTheLoop)
{
    sequencer.loadMIDIFile(first, true);
    sequencer.isLooping = true;
    sequencer.isMultiChannel = false;
    sequencer.setSamplerate(96000.0);
    sequencer.cable = 7;
    sequencer.loadMIDIFile(second, false);
    sequencer.setSamplerate(48000.0);
    sequencer.cable = 1;
    sequencer.currentChannel = 4;
    sequencer.startClean(1000);
    sequencer.play(1000, 40000);

    EXPECT_EQ(notesOf(sequencer),
              (StampedEvents{{48000, {0x07, 72, 100}}, {72000, {0x07, 72, 64}}, {96000, {0x07, 7, 9}}}));
    EXPECT_EQ(sequencer.getEventList().back()->event().cable, 7);
    EXPECT_EQ(sequencer.getEventList().back()->beats, 2.0);
    sequencer.setChannel(5);
    EXPECT_EQ(notesOf(sequencer).back(), (Stamped{96000, {0x07, 7, 9}}));
    EXPECT_THAT(sequencer.play(41000, 48000), Contains(Stamped{89000, {0x07, 72, 100}}));
    EXPECT_EQ(sequencer.getRunningNotesCount(), 0);
    EXPECT_EQ(sequencer.getCurrentEvent()->event().data[0], 0x07);
}

TEST_F(AUMIDISequencerLoading, AFilePutOffIsNeverInUseWhereNothingLoops)
{
    sequencer.loadMIDIFile(first, true);
    sequencer.loadMIDIFile(second, false);
    sequencer.startClean(1000);
    sequencer.play(1000, 40000);

    EXPECT_EQ(notesOf(sequencer), firstNotes);
}

TEST_F(AUMIDISequencerLoading, AMissingFileTakesBackOneThatWasPutOff)
{
    sequencer.loadMIDIFile(first, true);
    sequencer.isLooping = true;
    sequencer.loadMIDIFile(second, false);
    sequencer.loadMIDIFile(folder.path / "none.mid", false);
    sequencer.startClean(1000);
    sequencer.play(1000, 40000);

    EXPECT_EQ(notesOf(sequencer), firstNotes);
}

TEST_F(AUMIDISequencerLoading, NotesOfAListThatWasReplacedAreEndedAndOldListsDie)
{
    sequencer.loadMIDIFile(first, true);
    sequencer.isLooping = true;
    sequencer.loadMIDIFile(second, false);
    const std::weak_ptr<AUMIDIEventEx> old = sequencer.getEventList().back();
    const std::weak_ptr<MIDISequence16> oldSequence = sequencer.sequence();
    sequencer.startClean(1000);
    sequencer.play(1000, 40000);
    EXPECT_FALSE(old.expired());
    sequencer.rewind();

    EXPECT_TRUE(old.expired());
    EXPECT_TRUE(oldSequence.expired());
}

TEST_F(AUMIDISequencerLoading, ANoteThatSoundsOutlivesItsList)
{
    sequencer.load(StampedEvents{{0, {0x90, 60, 90}}, {9000, {0x80, 60, 0}}});
    const std::weak_ptr<AUMIDIEventEx> note = sequencer.getEventList().front();
    sequencer.startClean(1000);
    sequencer.play(1000, 512);
    sequencer.load(StampedEvents{{5, {0x90, 62, 90}}, {9000, {0x80, 62, 0}}});
    EXPECT_FALSE(sequencer.seeking);
    EXPECT_TRUE(sequencer.isPlaying());
    EXPECT_THAT(sequencer.play(1512, 512), ElementsAre(Stamped{1517, {0x90, 62, 90}}));
    EXPECT_FALSE(note.expired());
    sequencer.seeking = true;
    EXPECT_THAT(sequencer.play(2024, 512), ElementsAre(Stamped{0, {0x90, 60, 0}}, Stamped{5, {0x90, 62, 0}}));
    EXPECT_FALSE(note.expired());
    sequencer.load(StampedEvents{});

    EXPECT_TRUE(note.expired());
}

TEST_F(AUMIDISequencerLoading, AMusicSequenceIsLoadedFromItsStartAndPlaysOn)
{
    const auto music = std::make_shared<MIDISequence16>();
    music->loadFromFile(second);
    sequencer.load(StampedEvents{{0, {0xB0, 7, 1}}, {500, {0xB0, 7, 1}}, {9000, {0x80, 60, 0}}});
    sequencer.startClean(1000);
    sequencer.play(1000, 400);
    sequencer.listener->calls.clear();
    sequencer.loadSequence(music->getMusicSequence());

    EXPECT_EQ(notesOf(sequencer), secondNotes);
    EXPECT_FALSE(sequencer.seeking);
    EXPECT_TRUE(sequencer.isPlaying());
    EXPECT_EQ(sequencer.getCurrentEventIndex(), 0);
    EXPECT_EQ(sequencer.getCurrentPositionInSamples(), 0);
    EXPECT_EQ(sequencer.sequence()->getMusicSequence(), music->getMusicSequence());
    EXPECT_THAT(sequencer.listener->calls, ElementsAre("loaded"));
}

TEST_F(AUMIDISequencerLoading, AListTellsTheFileThatItIsOf)
{
    EXPECT_EQ(sequencer.list().file.filePath, "");
    sequencer.loadMIDIFile(first, true);
    EXPECT_EQ(sequencer.list().file.filePath, first.string());
    sequencer.loadSequence(sequencer.sequence()->getMusicSequence());
    EXPECT_EQ(sequencer.list().file.filePath, "");
}

TEST_F(AUMIDISequencerLoading, AClipAsksTheMixerForTwoTracksWithoutAFile)
{
    const auto mixer = std::make_shared<AskedMixer>();
    sequencer.phraseMixer = mixer;
    sequencer.loadClip();
    EXPECT_THAT(mixer->asked, ElementsAre(std::pair(0, ""), std::pair(1, "")));
}

TEST_F(AUMIDISequencerLoading, ASequencerOfOneChannelWritesItsChannelAfterEachLoading)
{
    sequencer.isMultiChannel = false;
    sequencer.setChannel(2);
    sequencer.loadMIDIFile(second, true);

    EXPECT_EQ(notesOf(sequencer),
              (StampedEvents{{24000, {0x05, 72, 100}}, {36000, {0x05, 72, 64}}, {48000, {0x05, 7, 9}}}));
}

TEST_F(AUMIDISequencerLoading, SettingTheChannelKeepsTheLowNibbleAndAddsTheChannel)
{
    sequencer.load(StampedEvents{{0, {0x95, 60, 1}}, {1, {0xEF, 1, 1}}, {2, {0xF0, 1}}, {3, {0x7F}}});
    sequencer.setChannel(15);

    EXPECT_EQ(listOf(sequencer),
              (StampedEvents{{0, {20, 60, 1}}, {1, {30, 1, 1}}, {2, {0xF0, 1}}, {3, {0x7F}}}));
    EXPECT_EQ(sequencer.currentChannel, 15);
}

TEST_F(AUMIDISequencerLoading, AChannelOfSixteenIsTold)
{
    sequencer.load(StampedEvents{{0, {0x95, 60, 1}}});
    sequencer.setChannel(16);

    EXPECT_EQ(listOf(sequencer), (StampedEvents{{0, {0x95, 60, 1}}}));
    EXPECT_EQ(sequencer.currentChannel, 0);
    EXPECT_THAT(console.take(), ElementsAre("AUMIDISequencer::ERROR: The channel is invalid."));
}

TEST_F(AUMIDISequencerLoading, WhatIsLoadedCanBeDumped)
{
    sequencer.load(StampedEvents{{0, {0x95, 5, 1}}, {1, {0xEF, 0x10, 1}}});
    sequencer.dumpout();

    EXPECT_THAT(console.take(),
                ElementsAre("AUMIDISequencer: The following MIDI data is loaded and scheduled for playing: ",
                            " - 0 : 95 5 1", " - 1 : EF10 1"));
}

TEST_F(AUMIDISequencerLoading, TheSequenceAnswersForTemposPatchesAndSaving)
{
    sequencer.loadMIDIFile(first, true);
    sequencer.sequence()->setTempo(100.0);

    ASSERT_EQ(sequencer.getTempoEvents().size(), 1U);
    EXPECT_EQ(sequencer.getTempoEvents().front()->event().data[2], 100);
    EXPECT_EQ(sequencer.getPatchForChannel(0), 0);
    sequencer.saveMIDIFile(folder.path / "saved.mid");
    EXPECT_THAT(folder.names(), Contains("saved.mid"));
    EXPECT_FALSE(sequencer.saveMIDIFile2(folder.path / "not.mid"));
    sequencer.loadClip();
    sequencer.reset();
    EXPECT_TRUE(sequencer.saveMIDIFile2(folder.path / "not.mid"));
    EXPECT_THAT(folder.names(), Not(Contains("not.mid")));
}

TEST_F(AUMIDISequencerLoading, ANoteThatSoundsWhileTheChannelIsSetIsNotEndedAnyMore)
{
    sequencer.load(StampedEvents{{0, {0x90, 60, 90}}, {600, {0x80, 60, 0}}, {90'000, {0xB0, 7, 1}}});
    sequencer.startClean(1);
    EXPECT_THAT(sequencer.play(1, 512), ElementsAre(Stamped{1, {0x90, 60, 90}}));
    sequencer.setChannel(5);
    EXPECT_THAT(sequencer.play(513, 512), ElementsAre(Stamped{601, {5, 60, 0}}));
    sequencer.seekToPosition(0.5);
    EXPECT_THAT(sequencer.play(1025, 512), ElementsAre(Stamped{0, {5, 60, 0}}));
    EXPECT_EQ(sequencer.getRunningNotesCount(), 0);
}

TEST(AUMIDISequencerLoadingDeathTest, NoCurrentFileIsAFatalStop)
{
    AUMIDISequencer sequencer;
    EXPECT_STOP(sequencer.loadMIDIFileInternal(), nilMessage);
}

TEST(AUMIDISequencerLoadingDeathTest, NoListIsAFatalStop)
{
    SequencerProbe sequencer;
    EXPECT_STOP(sequencer.useList(nullptr), nilMessage);
}

TEST(AUMIDISequencerLoadingDeathTest, WhatWasIsGoneBeforeAnythingIsLoaded)
{
    static SequencerProbe sequencer;
    sequencer.load(StampedEvents{{0, {0x90, 60, 1}}});
    setFinalStep([] { std::_Exit(sequencer.isEmpty() ? 7 : 8); });
    EXPECT_EXIT(sequencer.loadSequence(nullptr), testing::ExitedWithCode(7), "");
    EXPECT_EXIT(sequencer.loadMIDIFileInternal(), testing::ExitedWithCode(7), "");
    setFinalStep(nullptr);
}

} // namespace volvelle::test
