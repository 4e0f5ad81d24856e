#include "tests/services/audiograph/Studio.h"

#include <array>
#include <fstream>
#include <functional>
#include <gmock/gmock.h>

namespace volvelle::test {

namespace {

using testing::ElementsAre;
using testing::ElementsAreArray;

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
    for (int i = 0; i < 8000; ++i) {
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

TEST(AVAudioSequencer, AKeyEndsAsOftenAsItWasStruckWhereverTheMusicIsTakenAway)
{
    Song song;
    for (int i = 0; i < 300; ++i) {
        song.note(i / 960.0, 0, 60, 100, 8.0).note(i / 960.0, 0, i % 20, 100, 8.0);
    }
    const std::vector<std::function<void(Studio&)>> ways{
        [](Studio& studio) { studio.sequencer->stop(); },
        [](Studio& studio) { studio.sequencer->setCurrentPositionInBeats(4.0); },
        [](Studio& studio) { studio.load(Song().note(8.0, 1, 60, 100, 1.0)); },
        [](Studio& studio) { studio.sequencer->tracks()[0]->setDestinationAudioUnit(nullptr); },
        [](Studio& studio) { studio.sequencer.reset(); }};
    for (const auto& takeAway : ways) {
        Studio studio(512);
        studio.load(song);
        studio.start();
        studio.run(9600);
        EXPECT_EQ(studio.recorder->sounding(), 600);
        takeAway(studio);
        studio.run(512);
        EXPECT_EQ(studio.recorder->sounding(), 0);
    }
}

// Played through, the end of the first note ends both for an instrument.
TEST(AVAudioSequencer, BehindAStartAnEarlierNoteStillEndsItsKeyWhereThatWasStruckAnew)
{
    Studio studio;
    studio.load(Song()
                    .note(0.0, 0, 60, 100, 3.0, 1)
                    .note(0.5, 0, 60, 100, 4.0, 2)
                    .note(0.0, 0, 61, 100, 3.0, 3)
                    .note(2.0, 0, 60, 100, 4.0, 4)
                    .note(4.0, 0, 60, 100, 1.0, 5)
                    .note(3.0, 0, 62, 100, 2.5, 6)
                    .note(0.0, 0, 62, 100, 3.0, 7));
    studio.start(1.0);
    const Lines heard = studio.run(144001);
    EXPECT_THAT(Lines(heard.end() - 8, heard.end()),
                ElementsAre("24000: 90 3C 64", "48000: 80 3C 01", "48000: 90 3E 64", "72000: 90 3C 64",
                            "84000: 80 3C 02", "96000: 80 3C 05", "108000: 80 3E 06", "120000: 80 3C 04"));
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
