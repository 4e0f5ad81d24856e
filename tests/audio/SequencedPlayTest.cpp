#include "tests/audio/SequencedFixture.h"

#include <atomic>
#include <thread>

namespace volvelle::test {

namespace {

using testing::Contains;
using testing::ElementsAre;
using testing::IsEmpty;
using testing::SizeIs;

// Where the file ends, starts it muted, so that it stands at its end and plays on, and has another thread
// hold the sequencer.
class Holder : public AUMIDISequencerDelegate {
public:
    explicit Holder(AUMIDISequencer& held) : sequencer(held) {}

    bool holds() const { return isHolding; }

    void release()
    {
        isReleased = true;
        thread.join();
    }

    void onAUSequencerComplete() override
    {
        sequencer.muteAll();
        ASSERT_TRUE(sequencer.startAtOnce(1));
        thread = std::thread([this] {
            sequencer.exclusively([this] {
                isHolding = true;
                while (!isReleased) {
                    std::this_thread::yield();
                }
            });
        });
        while (!isHolding) {
            std::this_thread::yield();
        }
    }

    void onAUSequencerLoop(int /*count*/) override {}

    void onAUSequencerLoaded() override {}

private:
    AUMIDISequencer& sequencer;
    std::thread thread;
    std::atomic<bool> isHolding{false};
    std::atomic<bool> isReleased{false};
};

TEST_F(SequencedPlayTest, TheResetsOfAStartComeFirstAndUndoNothing)
{
    for (const int block : {512, 16, 1}) {
        play(Song().message(0.0, 0xCF, 77).note(0.0, 15, 60, 100, 0.25));
        const auto begin = std::ssize(unit->heard);
        hand.render(2048, block);
        const Heard heard(unit->heard.begin() + begin, unit->heard.end());
        const auto program = std::ranges::find_if(heard, [](const HeardMessage& message) {
            return message.bytes == std::vector<std::uint8_t>{0xCF, 77};
        });
        ASSERT_EQ(program - heard.begin(), resetsOfAStop) << block;
        EXPECT_TRUE((program + 1)->is(0x9F, 60, 100));
        EXPECT_EQ(program->frame - heard.front().frame, block);
        EXPECT_EQ((program + 1)->frame, program->frame);
        sequenced->stop();
        hand.render(100, 100);
    }
}

TEST_F(SequencedPlayTest, OnlyWhatAnInstrumentTakesIsSent)
{
    play(Song().text(3, "a name").tempo(0.0, 100.0).note(1.0, 0, 60, 100, 1.0));
    hand.render(1024, 512);
    take();
    AUMIDIEvent record;
    record.eventType = AURenderEventMIDI;
    record.length = 3;
    for (const int status : {0x00, 0x45, 0xF8, 0xF2, 0xFD, 0xFF}) {
        record.data[0] = static_cast<std::uint8_t>(status);
        sequenced->sequencer.addRealtimeEvent(record);
    }
    sequenced->sequencer.sendEvent({0xF0, 1, 2, 3, 4});
    hand.render(512);
    EXPECT_THAT(take(), IsEmpty());
    sequenced->sequencer.sendEvent({0xF0, 1, 2, 3, 0xF7});
    sequenced->sequencer.sendEvent(2, 0xB0, 7, 99);
    hand.render(512);
    EXPECT_THAT(take(),
                ElementsAre(HeardMessage{1536, {0xF0, 1, 2, 3, 0xF7}}, HeardMessage{1537, {0xB2, 7, 99}}));
}

TEST_F(SequencedPlayTest, WhatIsStampedBehindTheBlockSoundsWithTheNext)
{
    play(Song().note(4.0, 0, 60, 100, 1.0));
    hand.render(1024, 512);
    take();
    for (int i = 0; i < 20; ++i) {
        sequenced->sequencer.sendEvent(1, 0xB0, 1, static_cast<std::uint8_t>(i));
    }
    hand.render(48, 16);
    const Heard heard = take();
    ASSERT_THAT(heard, SizeIs(20));
    for (int i = 0; i < 20; ++i) {
        EXPECT_EQ(heard[static_cast<std::size_t>(i)],
                  (HeardMessage{1024 + std::min(i, 16), {0xB1, 1, static_cast<std::uint8_t>(i)}}));
    }
}

TEST_F(SequencedPlayTest, APauseEndsNotesAndPedalsAndTheFileGoesOnBehindIt)
{
    play(Song().message(0.5, 0xB2, 64, 127).note(1.0, 2, 60, 100, 2.0).note(4.0, 2, 62, 100, 1.0));
    hand.render(48'000 + 512, 512);
    EXPECT_EQ(hanging(), 1);
    sequenced->pause();
    EXPECT_EQ(sequenced->positionInBeats(), 2.0);
    hand.render(5 * 512, 512);
    EXPECT_EQ(hanging(), 0);
    const Heard heard = take();
    EXPECT_THAT(heard, Contains(HeardMessage{48'512, {0x92, 60, 0}}));
    const auto lifted = std::ranges::find_if(
        heard, [](const auto& message) { return message.is(0xB2, 64, 0) && message.frame > 24'000; });
    ASSERT_NE(lifted, heard.end());
    EXPECT_LT(lifted->frame, 48'512 + 512);
    EXPECT_EQ(sequenced->positionInBeats(), 2.0);
    sequenced->pause();
    sequenced->goOn();
    sequenced->goOn();
    hand.render(512);
    EXPECT_THAT(take(), ElementsAre(HeardMessage{48'512 + 5 * 512, {0xB2, 64, 127}}));
    hand.render(96'000, 512);
    EXPECT_TRUE(std::ranges::any_of(unit->heard, [](const auto& message) {
        return message.is(0x92, 62, 100) && message.frame == 96'512 + 5 * 512;
    }));
    EXPECT_TRUE(sequenced->hasEnded());
}

TEST_F(SequencedPlayTest, AStopLeavesNoNoteAndNoPedalAndRewinds)
{
    play(Song().message(0.5, 0xB2, 66, 127).note(1.0, 2, 60, 100, 2.0).note(4.0, 2, 62, 100, 1.0));
    hand.render(48'000, 480);
    sequenced->stop();
    EXPECT_FALSE(sequenced->isPlaying());
    EXPECT_FALSE(sequenced->hasEnded());
    EXPECT_EQ(sequenced->positionInBeats(), 0.0);
    hand.render(480);
    EXPECT_EQ(hanging(), 0);
    EXPECT_THAT(unit->heard, Contains(HeardMessage{48'000, {0xB2, 66, 0}}));
    take();
    sequenced->stop();
    sequenced->goOn();
    hand.render(96'000, 480);
    EXPECT_THAT(take(), IsEmpty());
    sequenced->start();
    hand.render(24'481, 480);
    EXPECT_EQ(hanging(), 1);
}

TEST_F(SequencedPlayTest, APedalEndsWithTheFileAndWithAnotherStart)
{
    play(Song().message(0.5, 0xB2, 66, 127).note(1.0, 2, 60, 100, 1.0));
    const auto isLift = [](const auto& message) { return message.is(0xB2, 66, 0); };
    hand.render(24'000, 480);
    EXPECT_EQ(std::ranges::count_if(unit->heard, isLift), 0);
    sequenced->start();
    hand.render(48'000, 480);
    EXPECT_FALSE(sequenced->hasEnded());
    EXPECT_EQ(std::ranges::count_if(take(), isLift), 1);
    hand.render(960, 480);
    EXPECT_TRUE(sequenced->hasEnded());
    EXPECT_EQ(std::ranges::count_if(take(), isLift), 1);
}

TEST_F(SequencedPlayTest, APedalThatTheFileResetStaysUpAfterAPause)
{
    play(Song().message(0.5, 0xB2, 64, 127).message(0.75, 0xB2, 121, 0).note(1.0, 2, 60, 100, 4.0));
    hand.render(48'000, 480);
    sequenced->pause();
    hand.render(480);
    take();
    sequenced->goOn();
    hand.render(480);
    EXPECT_THAT(take(), IsEmpty());
}

TEST_F(SequencedPlayTest, WhatIsSentSoundsNoLaterThanTheFileBehindIt)
{
    play(Song().note(1.0, 0, 60, 100, 1.0));
    hand.render(24'000, 480);
    take();
    hand.render(475);
    for (int i = 0; i < 20; ++i) {
        sequenced->sequencer.sendEvent(1, 0xB0, 1, static_cast<std::uint8_t>(i));
    }
    hand.render(480);
    const Heard heard = take();
    ASSERT_THAT(heard, SizeIs(21));
    EXPECT_EQ(heard.back(), (HeardMessage{24'480, {0x90, 60, 100}}));
    EXPECT_EQ(heard.front().frame, 24'475);
    EXPECT_EQ(heard[19], (HeardMessage{24'480, {0xB1, 1, 19}}));
}

TEST_F(SequencedPlayTest, AStopInAPauseRewinds)
{
    play(Song().note(1.0, 2, 60, 100, 2.0));
    hand.render(48'000, 480);
    sequenced->pause();
    hand.render(480);
    sequenced->stop();
    EXPECT_EQ(sequenced->positionInBeats(), 0.0);
    sequenced->goOn();
    EXPECT_FALSE(sequenced->isPlaying());
}

TEST_F(SequencedPlayTest, AStartInAPauseEndsThePause)
{
    play(Song().message(0.5, 0xB2, 64, 127).note(1.0, 2, 60, 100, 4.0));
    hand.render(48'000, 480);
    sequenced->pause();
    hand.render(480);
    sequenced->start();
    hand.render(4'800, 480);
    take();
    sequenced->goOn();
    hand.render(480);
    EXPECT_THAT(take(), IsEmpty());
    EXPECT_TRUE(sequenced->isPlaying());
}

TEST_F(SequencedPlayTest, ItEndsWithItsLastEvent)
{
    play(Song().note(0.0, 2, 60, 100, 1.0).length(8.0));
    EXPECT_FALSE(sequenced->hasEnded());
    hand.render(24'000, 500);
    EXPECT_FALSE(sequenced->hasEnded());
    EXPECT_EQ(sequenced->positionInBeats(), 23'500 / 24'000.0);
    hand.render(500);
    EXPECT_TRUE(sequenced->hasEnded());
    EXPECT_FALSE(sequenced->isPlaying());
    EXPECT_EQ(sequenced->positionInBeats(), 0.0);
    sequenced->start();
    EXPECT_FALSE(sequenced->hasEnded());
}

TEST_F(SequencedPlayTest, APieceWhoseLastEventIsLeftOutEndsByItsLength)
{
    ASSERT_EQ(sequenced->load(Song().note(0.0, 2, 60, 100, 0.5).note(1.0, 3, 60, 100, 1.0).file()).error(),
              "");
    sequenced->sequencer.mute(3);
    sequenced->start();
    hand.render(48'000, 500);
    EXPECT_FALSE(sequenced->hasEnded());
    hand.render(500);
    EXPECT_TRUE(sequenced->hasEnded());
    hand.render(500);
    EXPECT_EQ(hanging(), 0);
    EXPECT_THAT(unit->heard, SizeIs(2 * resetsOfAStop + 2));
}

TEST_F(SequencedPlayTest, AFileOfANoteWithoutLengthSoundsBeforeItEnds)
{
    play(Song().note(0.0, 2, 60, 100, 0.0));
    EXPECT_FALSE(sequenced->hasEnded());
    hand.render(1024, 512);
    EXPECT_TRUE(sequenced->hasEnded());
    EXPECT_THAT(notesOf(unit->heard),
                ElementsAre(HeardMessage{512, {0x92, 60, 100}}, HeardMessage{512, {0x82, 60, 0}}));
}

TEST_F(SequencedPlayTest, AFileWithoutEventsHasEndedAtOnce)
{
    play(Song());
    EXPECT_TRUE(sequenced->hasEnded());
    EXPECT_FALSE(sequenced->isPlaying());
}

TEST_F(SequencedPlayTest, WhatIsNoFileIsOneSentenceAndStops)
{
    play(Song().note(1.0, 2, 60, 100, 2.0));
    hand.render(48'000, 480);
    EXPECT_EQ(sequenced->load({1, 2, 3}).error(), "The music could not be read.");
    EXPECT_FALSE(sequenced->isPlaying());
    hand.render(480);
    EXPECT_EQ(hanging(), 0);
}

TEST_F(SequencedPlayTest, AnExclusiveThatTheListCutsShortIsLeftOut)
{
    play(Song().exclusive(0.0, exclusiveOf(1041)).exclusive(0.0, exclusiveOf(1040)).note(0.0, 0, 60, 1, 1.0));
    hand.render(1024, 512);
    const auto isExclusive = [](const auto& message) { return message.bytes.front() == 0xF0; };
    ASSERT_EQ(std::ranges::count_if(unit->heard, isExclusive), 1);
    EXPECT_EQ(std::ranges::find_if(unit->heard, isExclusive)->bytes, exclusiveOf(1040));
}

TEST_F(SequencedPlayTest, WhatIsOfNoChannelComesFirstOnItsBeat)
{
    play(Song()
             .message(0.0, 0xC0, 5)
             .message(0.0, 0xC1, 6)
             .exclusive(0.0, exclusiveOf(9))
             .note(0.0, 1, 60, 1, 1.0));
    hand.render(512);
    take();
    hand.render(512);
    EXPECT_THAT(take(), ElementsAre(HeardMessage{512, exclusiveOf(9)}, HeardMessage{512, {0xC0, 5}},
                                    HeardMessage{512, {0xC1, 6}}, HeardMessage{512, {0x91, 60, 1}}));
}

TEST_F(SequencedPlayTest, ProgramsAreAnnouncedOnceEach)
{
    play(Song()
             .message(0.0, 0xB3, 0, 8)
             .message(0.0, 0xC3, 5)
             .note(0.0, 3, 60, 1, 1.0)
             .note(0.0, 9, 36, 1, 1.0)
             .note(1.0, 9, 36, 1, 1.0));
    EXPECT_THAT(unit->announced,
                testing::UnorderedElementsAre(AUMIDIProgram{3, 8, 0, 5}, AUMIDIProgram{9, 0, 0, 0}));
}

TEST_F(SequencedPlayTest, AnOperationOfAnotherThreadHoldsTheFile)
{
    play(Song().note(1.0, 0, 60, 100, 1.0));
    hand.render(10 * 512, 512);
    sequenced->sequencer.exclusively([this] { hand.render(512); });
    hand.render(48'000, 512);
    EXPECT_TRUE(std::ranges::any_of(unit->heard, [](const auto& message) {
        return message.is(0x90, 60, 100) && message.frame == 24'000 + 2 * 512;
    }));
}

TEST_F(SequencedPlayTest, AThreadThatHoldsTheSequencerHoldsUpNoBlock)
{
    const auto holder = std::make_shared<Holder>(sequenced->sequencer);
    sequenced->sequencer.delegate = holder;
    play(Song().tempo(0.0, FileTempo::slowest).note(0.0, 2, 60, 100, 0.0));
    hand.render(2, 1);
    ASSERT_TRUE(holder->holds());
    EXPECT_TRUE(sequenced->isPlaying());
    hand.render(1);
    EXPECT_FALSE(sequenced->hasEnded());
    holder->release();
    hand.render(1);
    EXPECT_TRUE(sequenced->hasEnded());
    EXPECT_FALSE(sequenced->isPlaying());
    sequenced->sequencer.delegate = nullptr;
}

TEST_F(SequencedPlayTest, AnEngineThatStopsStopsTheFile)
{
    play(Song().note(1.0, 0, 60, 100, 1.0));
    hand.render(48'000, 480);
    hand.engine->stop();
    EXPECT_FALSE(sequenced->isPlaying());
    EXPECT_EQ(unit->engineStops, 1);
    take();
    ASSERT_EQ(hand.engine->start().error(), "");
    hand.render(480);
    EXPECT_GE(unit->resets, 1);
    sequenced->start();
    hand.render(48'000, 480);
    EXPECT_EQ(hanging(), 1);
}

TEST_F(SequencedPlayTest, WhatOthersSendReachesTheInstrument)
{
    AVAudioSequencer other(hand.engine);
    ASSERT_EQ(other.loadFromData(Song().note(1.0, 5, 60, 100, 1.0).file(), AVAudioSequencer::channelsToTracks)
                  .error(),
              "");
    for (const auto& track : other.tracks()) {
        track->setDestinationAudioUnit(hand.instrument);
    }
    ASSERT_EQ(other.start().error(), "");
    EXPECT_EQ(sequenced->musicDeviceMIDIEvent(0x91, 40, 50, 7), noErr);
    hand.render(48'000, 480);
    EXPECT_THAT(unit->heard, Contains(HeardMessage{7, {0x91, 40, 50}}));
    EXPECT_THAT(unit->heard, Contains(HeardMessage{24'000, {0x95, 60, 100}}));
}

} // namespace

} // namespace volvelle::test
