#include "tests/services/audiograph/Studio.h"

#include <array>
#include <fstream>
#include <gmock/gmock.h>
#include <numeric>

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

Song pedalledNote(int pedal)
{
    return Song().message(0.0, 0xB0, pedal, 127).note(0.0, 0, 60, 100, 0.25).note(8.0, 0, 60, 100, 1.0);
}

// The pedals come up after the note-off, and before anything goes down again.
void expectPedalsUp(const Lines& heard, const std::string& frame)
{
    for (const char* pedal : {"40", "42", "45"}) {
        EXPECT_THAT(heard, testing::Contains(frame + ": B0 " + pedal + " 00"));
    }
}

class Pedals : public testing::TestWithParam<int> {};

INSTANTIATE_TEST_SUITE_P(All, Pedals, testing::Values(64, 66, 69));

TEST_P(Pedals, ComeUpAtAStop)
{
    Studio studio;
    studio.load(pedalledNote(GetParam()));
    studio.start();
    studio.run(9600);
    studio.sequencer->stop();
    expectPedalsUp(studio.run(512), "9600");
}

TEST_P(Pedals, ComeUpAtASeekAndGoDownAgainWhereTheyAreDownThere)
{
    Studio studio;
    studio.load(pedalledNote(GetParam()));
    studio.start();
    studio.run(9600);
    studio.sequencer->setCurrentPositionInBeats(4.0);
    const Lines heard = studio.run(512);
    expectPedalsUp(heard, "9600");
    const auto pedal = static_cast<std::uint8_t>(GetParam());
    const Lines state = stateLines(9600, 0, {{0xB0, pedal, 127}});
    EXPECT_EQ(Lines(heard.end() - static_cast<std::ptrdiff_t>(state.size()), heard.end()), state);
}

TEST_P(Pedals, ComeUpWhereOtherContentTakesOver)
{
    Studio studio;
    studio.load(pedalledNote(GetParam()));
    studio.start();
    studio.run(9600);
    studio.load(Song().note(8.0, 1, 60, 100, 1.0));
    expectPedalsUp(studio.run(512), "9600");
}

TEST_P(Pedals, ComeUpWhereTheDestinationIsTakenAway)
{
    Studio studio;
    studio.load(pedalledNote(GetParam()));
    studio.start();
    studio.run(9600);
    studio.sequencer->tracks()[0]->setDestinationAudioUnit(nullptr);
    expectPedalsUp(studio.run(512), "9600");
}

TEST_P(Pedals, ComeUpWhereTheSequencerDies)
{
    Studio studio;
    studio.load(pedalledNote(GetParam()));
    studio.start();
    studio.run(9600);
    studio.sequencer.reset();
    expectPedalsUp(studio.run(512), "9600");
}

TEST_P(Pedals, ComeUpWhereTheSequencerStopsInTheBlockOfOtherContent)
{
    Studio studio;
    studio.load(pedalledNote(GetParam()));
    studio.start();
    studio.run(9600);
    studio.load(Song().note(8.0, 1, 60, 100, 1.0));
    studio.sequencer->stop();
    expectPedalsUp(studio.run(512), "9600");
}

// A unit at another rate takes its messages some frames late: it must own them by then.
TEST(AVAudioSequencer, AnExclusiveOutlivesTheContentThatItComesFrom)
{
    Studio studio(64, 44100.0);
    const std::vector<std::uint8_t> bytes{0xF0, 0x7D, 1, 2, 3, 4, 5, 6, 0xF7};
    studio.load(Song().exclusive(0.0, bytes).note(8.0, 0, 60, 100, 1.0));
    studio.start();
    std::array<float, 64> left{};
    std::array<float, 64> right{};
    studio.engine->renderOffline(64, left.data(), right.data());
    studio.load(Song().note(8.0, 0, 61, 100, 1.0));
    studio.engine->renderOffline(64, left.data(), right.data());
    studio.engine->collectGarbage();
    EXPECT_THAT(studio.run(2000), testing::Contains("256: F0 7D 01 02 03 04 05 06 F7"));
}

TEST(AVAudioSequencer, AKeyToGlideFromCountsUntilANoteHasUsedIt)
{
    const auto song = Song().message(0.0, 0xB0, 84, 50).note(2.0, 0, 60, 100, 0.5).note(9.0, 0, 60, 100, 0.5);
    Studio before;
    before.load(song);
    before.start(1.0);
    EXPECT_THAT(before.run(512), ElementsAreArray(stateLines(0, 0, {{0xB0, 84, 50}})));
    Studio behind;
    behind.load(song);
    behind.start(4.0);
    EXPECT_THAT(behind.run(512), ElementsAreArray(stateLines(0, 0)));
}

TEST(AVAudioSequencer, AStartElsewhereBringsExclusivesBeforeTheChannels)
{
    Studio studio;
    studio.load(Song()
                    .message(0.0, 0xB0, 7, 50)
                    .exclusive(0.5, {0xF0, 0x7F, 0x7F, 0x04, 0x01, 0x00, 0x10, 0xF7})
                    .exclusive(1.0, {0xF0, 0x7E, 0x7F, 0x09, 0x01, 0xF7})
                    .message(1.5, 0xB0, 10, 60)
                    .exclusive(2.0, {0xF0, 0x7F, 0x7F, 0x04, 0x01, 0x00, 0x11, 0xF7})
                    .note(9.0, 0, 60, 100, 0.5));
    studio.start(4.0);
    EXPECT_THAT(studio.run(512),
                ElementsAreArray(joined({{"0: F0 7E 7F 09 01 F7", "0: F0 7F 7F 04 01 00 11 F7"},
                                         stateLines(0, 0, {{0xB0, 10, 60}})})));
}

TEST(AVAudioSequencer, AResetComesBeforeWhatIsSetAtItsTime)
{
    Studio studio;
    studio.load(Song()
                    .exclusive(0.0, {0xF0, 0x7E, 0x7F, 0x09, 0x01, 0xF7})
                    .message(0.0, 0xC0, 5)
                    .exclusive(1.0, {0xF0, 0x7E, 0x7F, 0x09, 0x01, 0xF7})
                    .message(1.0, 0xC0, 6)
                    .note(1.0, 0, 60, 100, 0.5));
    studio.start();
    EXPECT_THAT(studio.run(25000),
                ElementsAreArray(joined({resetLines(0, {0}),
                                         {"0: F0 7E 7F 09 01 F7", "0: C0 05", "24000: F0 7E 7F 09 01 F7",
                                          "24000: C0 06", "24000: 90 3C 64"}})));
}

TEST(AVAudioSequencer, AChannelThatOnlyThePieceBeforeUsedIsResetToo)
{
    Studio studio;
    studio.load(Song().message(0.0, 0xB5, 7, 50).note(1.0, 5, 60, 100, 0.5));
    studio.start();
    studio.run(48000);
    studio.sequencer->stop();
    studio.run(512);
    studio.load(Song().note(1.0, 0, 60, 100, 0.5));
    studio.start();
    EXPECT_THAT(studio.run(512), ElementsAreArray(resetLines(48512, {0, 5})));
}

TEST(AVAudioSequencer, PreparingKnowsThatAResetEndsTheBank)
{
    Studio studio;
    studio.load(Song()
                    .message(0.0, 0xB0, 0, 8)
                    .exclusive(1.0, {0xF0, 0x7E, 0x7F, 0x09, 0x01, 0xF7})
                    .message(2.0, 0xC0, 16)
                    .note(3.0, 0, 60, 100, 0.5));
    studio.sequencer->prepareToPlay();
    EXPECT_THAT(studio.recorder->prepared, ElementsAre(AUMIDIProgram{0, 0, 0, 16}));
}

// A note less than half a frame before the block belongs to it.
TEST(AVAudioSequencer, NoNoteIsLostWhereADestinationChangesAtItsFrame)
{
    for (int tick = 0; tick < 40; ++tick) {
        Studio studio(64);
        Song song;
        song.tempo(0.0, 60.0 / 0.437956).note(2.0 + tick / 480.0, 0, 60, 100, 0.5).note(9.0, 1, 61, 100, 0.5);
        studio.load(song);
        studio.start();
        Lines heard;
        for (int block = 0; block < 800; ++block) {
            studio.sequencer->tracks()[1]->setDestinationAudioUnit(block % 2 == 0 ? nullptr
                                                                                  : studio.instrument);
            const Lines now = studio.run(64);
            heard.insert(heard.end(), now.begin(), now.end());
        }
        const auto isOn = [](const std::string& line) { return line.ends_with("90 3C 64"); };
        EXPECT_EQ(std::ranges::count_if(heard, isOn), 1) << tick;
    }
}

TEST(AVAudioSequencer, AHostOfOpenNotesIsEndedWithTheChannelsBehindThem)
{
    Song song;
    for (int i = 0; i < 12000; ++i) {
        song.note(0.0, 0, i % 20, 100, 8.0);
    }
    song.message(0.0, 0xBF, 64, 127).note(0.0, 15, 60, 100, 8.0);
    Studio studio(4096);
    studio.load(song);
    studio.start();
    studio.run(4096);
    studio.sequencer->stop();
    const Lines heard = studio.run(4096);
    EXPECT_THAT(heard, testing::Contains("4096: 8F 3C 00"));
    EXPECT_THAT(heard, testing::Contains("4096: BF 40 00"));
    EXPECT_THAT(heard, testing::Contains("4096: BF 7B 00"));
}

TEST(AVAudioSequencer, StartingOnAnEngineThatDoesNotRunFails)
{
    Studio studio;
    studio.engine->stop();
    EXPECT_EQ(studio.sequencer->start().error(), "The audio engine is not running.");
    EXPECT_FALSE(studio.sequencer->isPlaying());
}

TEST(AVAudioSequencer, StartingOnAnEngineThatIsGoneFails)
{
    auto engine = std::make_shared<AVAudioEngine>();
    AVAudioSequencer sequencer(engine);
    engine.reset();
    EXPECT_EQ(sequencer.start().error(), "The audio engine is not running.");
}

TEST(AVAudioSequencer, StoppingTheEngineStopsTheSequencerAndResetsTheUnits)
{
    Studio studio;
    studio.load(Song().note(0.0, 0, 60, 100, 8.0));
    studio.start();
    studio.run(600);
    studio.engine->stop();
    EXPECT_FALSE(studio.sequencer->isPlaying());
    ASSERT_EQ(studio.engine->start().error(), "");
    studio.run(64);
    EXPECT_EQ(studio.recorder->resets, 1);
    EXPECT_EQ(studio.recorder->sounding(), 0);
}

TEST(AVAudioSequencer, AFileThatCannotBeReadChangesNothing)
{
    Studio studio;
    studio.load(Song().note(0.0, 0, 60, 100, 8.0));
    EXPECT_THAT(studio.sequencer->loadFromData({1, 2, 3}, AVAudioSequencer::channelsToTracks).error(),
                testing::StartsWith("The MIDI file could not be read (-"));
    EXPECT_EQ(studio.sequencer->loadFromURL("/no/such/file.mid", AVAudioSequencer::channelsToTracks).error(),
              "The MIDI file could not be read (-43).");
    ASSERT_EQ(studio.sequencer->tracks().size(), 1U);
    EXPECT_EQ(studio.sequencer->tracks()[0]->destinationAudioUnit(), studio.instrument);
}

TEST(AVAudioSequencer, AFileOnDiskIsLoadedLikeItsBytes)
{
    Studio studio;
    const std::vector<std::uint8_t> data = Song().note(0.0, 2, 60, 100, 2.0).file();
    const std::filesystem::path path =
        std::filesystem::temp_directory_path() / ("volvelle-sequencer-" + std::to_string(getpid()) + ".mid");
    std::ofstream(path, std::ios::binary)
        .write(reinterpret_cast<const char*>(data.data()), static_cast<std::streamsize>(data.size()));
    EXPECT_EQ(studio.sequencer->loadFromURL(path, AVAudioSequencer::channelsToTracks).error(), "");
    std::filesystem::remove(path);
    ASSERT_EQ(studio.sequencer->tracks().size(), 1U);
    EXPECT_DOUBLE_EQ(studio.sequencer->tracks()[0]->lengthInBeats, 2.0);
}

TEST(AVAudioSequencer, TracksTellTheirLengthsInBeatsAndSeconds)
{
    Studio studio;
    studio.load(
        Song().tempo(0.0, 60.0).tempo(2.0, 240.0).note(0.0, 0, 60, 100, 1.0).note(3.0, 1, 60, 100, 1.0));
    ASSERT_EQ(studio.sequencer->tracks().size(), 2U);
    EXPECT_DOUBLE_EQ(studio.sequencer->tracks()[1]->lengthInBeats, 4.0);
    EXPECT_DOUBLE_EQ(studio.sequencer->tracks()[1]->lengthInSeconds, 2.5);
}

TEST(AVAudioSequencer, TheUserInfoTellsTitleCopyrightTempoAndDuration)
{
    Studio studio;
    studio.load(Song().tempo(0.0, 60.0).text(3, "Idea").text(2, "Mine").note(0.0, 0, 60, 100, 4.0));
    const PropertyDictionary expected{{"approximate duration in seconds", {4.0}},
                                      {"copyright", {std::string("Mine")}},
                                      {"tempo", {60.0}},
                                      {"title", {std::string("Idea")}}};
    EXPECT_EQ(studio.sequencer->userInfo(), expected);
}

TEST(AVAudioSequencer, PreparingNamesEachProgramOnce)
{
    Studio studio;
    studio.load(Song()
                    .note(0.0, 0, 60, 100, 0.5)
                    .message(1.0, 0xB0, 0, 3)
                    .message(1.0, 0xB0, 32, 4)
                    .message(1.0, 0xC0, 40)
                    .note(1.0, 0, 60, 100, 0.5)
                    .message(2.0, 0xC0, 40)
                    .note(3.0, 9, 60, 100, 0.5));
    studio.sequencer->prepareToPlay();
    EXPECT_THAT(studio.recorder->prepared, ElementsAre(AUMIDIProgram{0, 0, 0, 0}, AUMIDIProgram{0, 3, 4, 40},
                                                       AUMIDIProgram{9, 0, 0, 0}));
}

TEST(AVAudioSequencer, APositionReadsBackAtOnceAndBadOnesCountAsTheStart)
{
    Studio studio;
    studio.sequencer->setCurrentPositionInBeats(2.5);
    EXPECT_DOUBLE_EQ(studio.sequencer->currentPositionInBeats(), 2.5);
    EXPECT_DOUBLE_EQ(studio.sequencer->currentPositionInSeconds(), 1.25);
    studio.start(3.0);
    EXPECT_DOUBLE_EQ(studio.sequencer->currentPositionInBeats(), 3.0);
    studio.run(24000);
    EXPECT_DOUBLE_EQ(studio.sequencer->currentPositionInBeats(), 4.0);
    studio.sequencer->setCurrentPositionInBeats(-1.0);
    EXPECT_EQ(studio.sequencer->currentPositionInBeats(), 0.0);
    studio.sequencer->setCurrentPositionInBeats(std::nan(""));
    EXPECT_EQ(studio.sequencer->currentPositionInBeats(), 0.0);
}

TEST(AVAudioSequencer, RatesThatMakeNoSenseAreIgnored)
{
    Studio studio;
    studio.sequencer->setRate(1.5F);
    for (const float rate : {0.0F, -1.0F, std::nanf(""), HUGE_VALF, 1001.0F}) {
        studio.sequencer->setRate(rate);
        EXPECT_EQ(studio.sequencer->rate(), 1.5F);
    }
}

TEST(AVAudioSequencer, TracksWithoutDestinationOrOutOfUseStaySilent)
{
    Studio studio;
    studio.load(Song().note(0.0, 0, 60, 100, 8.0));
    const std::shared_ptr<AVMusicTrack> old = studio.sequencer->tracks()[0];
    ASSERT_EQ(studio.sequencer->loadFromData(Song().note(0.0, 0, 61, 100, 8.0).file(), 1).error(), "");
    old->setDestinationAudioUnit(nullptr);
    studio.start();
    EXPECT_THAT(studio.run(1000), ElementsAre());
    studio.sequencer.reset();
    old->setDestinationAudioUnit(studio.instrument);
}

} // namespace

} // namespace volvelle::test
