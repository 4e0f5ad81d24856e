#include "tests/services/audiograph/Studio.h"

#include <gmock/gmock.h>

namespace volvelle::test {

namespace {

using testing::ElementsAre;
using testing::ElementsAreArray;

class SequencerBlocks : public EachBlockSize {};

VOLVELLE_EACH_BLOCK_SIZE(SequencerBlocks);

TEST_P(SequencerBlocks, EventsStandAtTheirExactFrames)
{
    Studio studio(GetParam());
    studio.load(Song()
                    .message(0.0, 0xC0, 5)
                    .note(0.0, 0, 60, 100, 1.0)
                    .note(1.0, 0, 60, 90, 0.5, 33)
                    .message(1.25, 0xB0, 7, 80)
                    .note(1.0 / 3.0, 1, 64, 70, 1.0 / 3.0)
                    .exclusive(2.0, {0xF0, 0x7E, 0x7F, 0x09, 0x01, 0xF7}));
    studio.start();
    EXPECT_THAT(studio.run(60000),
                ElementsAreArray(joined({resetLines(0, {0, 1}),
                                         {"0: C0 05", "0: 90 3C 64", "8000: 91 40 46", "16000: 81 40 00",
                                          "24000: 80 3C 00", "24000: 90 3C 5A", "30000: B0 07 50",
                                          "36000: 80 3C 21", "48000: F0 7E 7F 09 01 F7"}})));
}

TEST_P(SequencerBlocks, TheTempoTrackIsFollowed)
{
    Studio studio(GetParam());
    studio.load(Song()
                    .tempo(0.0, 60.0)
                    .tempo(1.0, 240.0)
                    .tempo(2.0, 100.0)
                    .note(0.5, 0, 60, 100, 1.0)
                    .note(2.0, 0, 62, 100, 1.0 / 3.0));
    studio.start();
    // Beat 1 is at 1 s, beat 2 at 1.25 s, and a beat then lasts 0.6 s.
    EXPECT_THAT(
        studio.run(72000),
        ElementsAreArray(joined(
            {resetLines(0), {"24000: 90 3C 64", "54000: 80 3C 00", "60000: 90 3E 64", "69600: 80 3E 00"}})));
}

TEST_P(SequencerBlocks, TheRateStretchesFromWhereItIsSet)
{
    Studio studio(GetParam());
    studio.load(Song().note(1.0, 0, 60, 100, 1.0).note(4.0, 0, 62, 100, 1.0));
    studio.sequencer->setRate(2.0F);
    studio.start();
    EXPECT_THAT(studio.run(18000), ElementsAreArray(joined({resetLines(0), {"12000: 90 3C 64"}})));
    studio.sequencer->setRate(0.5F);
    // Beat 1.5 at frame 18,000; from here a beat lasts 48,000 frames.
    EXPECT_THAT(studio.run(182000), ElementsAre("42000: 80 3C 00", "138000: 90 3E 64", "186000: 80 3E 00"));
}

TEST_P(SequencerBlocks, NoteOffsComeBeforeNoteOnsButForNotesWithoutLength)
{
    Studio studio(GetParam());
    studio.load(Song()
                    .note(1.0, 0, 62, 50, 0.0)
                    .note(1.0, 0, 61, 51, 1.0)
                    .note(0.0, 0, 60, 52, 1.0)
                    .note(2.0, 0, 61, 53, 0.0));
    studio.start();
    EXPECT_THAT(studio.run(50000),
                ElementsAreArray(
                    joined({resetLines(0),
                            {"0: 90 3C 34", "24000: 80 3C 00", "24000: 90 3E 32", "24000: 80 3E 00",
                             "24000: 90 3D 33", "48000: 80 3D 00", "48000: 90 3D 35", "48000: 80 3D 00"}})));
    EXPECT_EQ(studio.recorder->sounding(), 0);
}

TEST_P(SequencerBlocks, ShortNotesThatFallIntoOneFrameKeepTheirOrder)
{
    Studio studio(GetParam());
    studio.sequencer->setRate(1000.0F);
    studio.load(Song().note(1.0, 0, 60, 50, 0.0125).note(1.0125, 0, 60, 51, 1.0));
    studio.start();
    EXPECT_THAT(studio.run(100),
                ElementsAreArray(joined(
                    {resetLines(0), {"24: 90 3C 32", "24: 80 3C 00", "24: 90 3C 33", "48: 80 3C 00"}})));
}

TEST_P(SequencerBlocks, NestedNotesOfOneKeyEndAsOftenAsTheyBegin)
{
    Studio studio(GetParam());
    studio.load(Song().note(0.0, 3, 60, 50, 2.0).note(0.5, 3, 60, 51, 2.0));
    studio.start();
    EXPECT_THAT(
        studio.run(70000),
        ElementsAreArray(joined(
            {resetLines(0, {3}), {"0: 93 3C 32", "12000: 93 3C 33", "48000: 83 3C 00", "60000: 83 3C 00"}})));
}

TEST_P(SequencerBlocks, StoppingLeavesNothingHanging)
{
    Studio studio(GetParam());
    studio.load(Song().note(0.0, 0, 60, 100, 8.0).note(0.0, 0, 60, 101, 8.0).note(1.0, 4, 72, 100, 8.0));
    studio.start();
    studio.run(30000);
    studio.sequencer->stop();
    EXPECT_FALSE(studio.sequencer->isPlaying());
    EXPECT_DOUBLE_EQ(studio.sequencer->currentPositionInBeats(), 1.25);
    EXPECT_THAT(studio.run(500000), ElementsAreArray(joined({{"30000: 80 3C 00", "30000: 80 3C 00"},
                                                             releaseLines(30000, 0),
                                                             {"30000: 84 48 00"},
                                                             releaseLines(30000, 4)})));
    EXPECT_DOUBLE_EQ(studio.sequencer->currentPositionInBeats(), 1.25);
}

TEST_P(SequencerBlocks, StartingElsewhereBringsTheChannelsUpToDate)
{
    Studio studio(GetParam());
    studio.load(Song()
                    .message(0.0, 0xB0, 0, 8)
                    .message(0.0, 0xC0, 5)
                    .message(0.5, 0xB0, 10, 20)
                    .message(0.5, 0xB0, 7, 90)
                    .message(1.0, 0xB0, 7, 91)
                    .message(1.5, 0xE0, 1, 66)
                    .message(3.0, 0xC0, 9)
                    .message(3.0, 0xB1, 10, 1)
                    .note(1.0, 0, 60, 100, 8.0)
                    .note(2.0, 0, 62, 100, 0.25));
    studio.start(2.0);
    EXPECT_THAT(
        studio.run(24000),
        ElementsAreArray(joined(
            {stateLines(0, 0, {{0xB0, 0, 8}, {0xC0, 5, 0}, {0xB0, 10, 20}, {0xB0, 7, 91}, {0xE0, 1, 66}}),
             stateLines(0, 1),
             {"0: 90 3E 64", "6000: 80 3E 00"}})));
    EXPECT_THAT(studio.run(200000), ElementsAre("24000: C0 09", "24000: B1 0A 01"));
}

TEST_P(SequencerBlocks, SeekingWhilePlayingEndsNotesAndGoesOnThere)
{
    Studio studio(GetParam());
    studio.load(Song()
                    .message(0.0, 0xB0, 64, 127)
                    .note(0.0, 0, 60, 100, 8.0)
                    .message(2.0, 0xB0, 64, 0)
                    .note(4.0, 0, 62, 100, 1.0));
    studio.start();
    studio.run(1000);
    studio.sequencer->setCurrentPositionInBeats(3.5);
    EXPECT_DOUBLE_EQ(studio.sequencer->currentPositionInBeats(), 3.5);
    EXPECT_THAT(
        studio.run(24000),
        ElementsAreArray(joined(
            {{"1000: 80 3C 00"}, releaseLines(1000, 0, false), stateLines(1000, 0), {"13000: 90 3E 64"}})));
    studio.sequencer->setCurrentPositionInBeats(0.0);
    EXPECT_THAT(studio.run(1000), ElementsAreArray(joined({{"25000: 80 3E 00"},
                                                           releaseLines(25000, 0, false),
                                                           resetLines(25000),
                                                           {"25000: B0 40 7F", "25000: 90 3C 64"}})));
}

TEST_P(SequencerBlocks, OtherContentTakesOverAtTheSameBeat)
{
    Studio studio(GetParam());
    studio.load(Song().note(0.0, 0, 60, 100, 8.0).note(2.0, 0, 61, 100, 8.0));
    studio.start();
    studio.run(36000);
    studio.load(Song().tempo(0.0, 60.0).note(1.0, 0, 70, 100, 8.0).note(2.0, 1, 71, 100, 0.5));
    // Beat 1.5 at frame 36,000; a beat lasts 48,000 frames now.
    EXPECT_THAT(studio.run(60000), ElementsAreArray(joined({{"36000: 80 3C 00"},
                                                            releaseLines(36000, 0, false),
                                                            stateLines(36000, 0),
                                                            stateLines(36000, 1),
                                                            {"60000: 91 47 64", "84000: 81 47 00"}})));
    EXPECT_TRUE(studio.sequencer->isPlaying());
}

TEST_P(SequencerBlocks, PastTheEndThePositionGrowsOn)
{
    Studio studio(GetParam());
    studio.load(Song().note(0.0, 0, 60, 100, 1.0));
    studio.start();
    studio.run(480000);
    EXPECT_TRUE(studio.sequencer->isPlaying());
    EXPECT_DOUBLE_EQ(studio.sequencer->currentPositionInBeats(), 20.0);
    EXPECT_DOUBLE_EQ(studio.sequencer->currentPositionInSeconds(), 10.0);
    EXPECT_EQ(studio.recorder->sounding(), 0);
}

TEST_P(SequencerBlocks, AnotherDestinationTakesOverAndTheOldOneFallsSilent)
{
    Studio studio(GetParam());
    const auto other = std::make_shared<RecordingUnit>();
    const auto node = std::make_shared<AVAudioUnitMIDIInstrument>(other);
    ASSERT_EQ(studio.engine->attachNode(node), noErr);
    ASSERT_EQ(studio.engine->connect(node, studio.engine->mainMixerNode(), 0, 1), noErr);
    studio.load(Song().message(0.0, 0xC0, 7).note(0.0, 0, 60, 100, 8.0).note(1.0, 0, 62, 100, 1.0));
    studio.start();
    studio.run(12000);
    studio.sequencer->tracks()[0]->setDestinationAudioUnit(node);
    EXPECT_THAT(studio.run(24000),
                ElementsAreArray(joined({{"12000: 80 3C 00"}, releaseLines(12000, 0, false)})));
    EXPECT_THAT(other->take(),
                ElementsAreArray(joined({stateLines(12000, 0, {{0xC0, 7, 0}}), {"24000: 90 3E 64"}})));
}

TEST_P(SequencerBlocks, ASequencerThatDiesLeavesNothingHanging)
{
    Studio studio(GetParam());
    studio.load(Song().note(0.0, 0, 60, 100, 8.0));
    studio.start();
    studio.run(600);
    studio.sequencer.reset();
    EXPECT_THAT(studio.run(600), ElementsAreArray(joined({{"600: 80 3C 00"}, releaseLines(600, 0)})));
}

TEST_P(SequencerBlocks, AStartThatFollowsAStopAtOnceIsANewStart)
{
    Studio studio(GetParam());
    studio.load(Song().note(0.0, 0, 60, 100, 8.0));
    studio.start();
    studio.run(600);
    studio.sequencer->stop();
    studio.start();
    EXPECT_EQ(studio.sequencer->currentPositionInBeats(), 0.0);
    EXPECT_THAT(studio.run(600),
                ElementsAreArray(
                    joined({{"600: 80 3C 00"}, releaseLines(600, 0), resetLines(600), {"600: 90 3C 64"}})));
}

TEST_P(SequencerBlocks, ALongFileIsPlayedWhole)
{
    Song song;
    std::vector<int> channels(16);
    std::iota(channels.begin(), channels.end(), 0);
    const Lines expected = resetLines(0, channels);
    for (int i = 0; i < 3000; ++i) {
        song.note(i * 0.125, i % 16, 36 + i % 50, 1 + i % 127, 0.0625);
    }
    Studio studio(GetParam());
    studio.load(song);
    studio.start();
    const Lines heard = studio.run(3000 * 3000);
    ASSERT_EQ(heard.size(), expected.size() + 6000);
    EXPECT_EQ(heard[expected.size()].substr(0, 3), "0: ");
    EXPECT_EQ(heard.back().substr(0, heard.back().find(':')), std::to_string(2999 * 3000 + 1500));
    EXPECT_EQ(studio.recorder->sounding(), 0);
}

} // namespace

} // namespace volvelle::test
