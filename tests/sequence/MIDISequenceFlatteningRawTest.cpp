#include "tests/sequence/FlatTexts.h"

// The tree as flat lists: metas, user data, and what has no realtime form.
namespace volvelle::test {
namespace {

using MIDISequenceFlatteningRawTest = FlatteningTest;
using Bytes = std::vector<std::uint8_t>;

std::shared_ptr<UserEvent> userEvent(const Bytes& bytes)
{
    const auto event = std::make_shared<UserEvent>();
    event->position = 1.0;
    event->setData(0, bytes);
    return event;
}

TEST_F(MIDISequenceFlatteningRawTest, AMetaEventHasThreeHeadBytesAndItsType)
{
    add(std::make_shared<MetaTextEvent>(1.0, "AB"));
    const auto events = owned();
    EXPECT_EQ(flatTexts(events), Lines{"24000 [253, 1, 0, 65, 66]"});
    ASSERT_EQ(events.size(), 1U);
    EXPECT_EQ(events[0]->meta, 1);
    EXPECT_EQ(events[0]->beats, 1.0);
    EXPECT_EQ(events[0]->duration, 0.0);
    EXPECT_EQ(events[0]->event().eventType, 8);
    EXPECT_EQ(events[0]->event().length, 5);
    EXPECT_EQ(flatTexts(plain()), Lines{"24000 [253, 1, 0]"});
}

TEST_F(MIDISequenceFlatteningRawTest, AMetaEventWithoutDataMakesNoEvent)
{
    add(std::make_shared<MetaEndOfTrackEvent>(1.0));
    EXPECT_EQ(said(), Lines{"error: data count of meta is zero."});
    EXPECT_TRUE(owned().empty());
    EXPECT_TRUE(plain().empty());
}

TEST_F(MIDISequenceFlatteningRawTest, AMetaEventOfLengthZeroMakesNoEvent)
{
    add(std::make_shared<MetaTextEvent>(1.0, "A"))->length = 0;
    EXPECT_EQ(said(), Lines{"error: meta length is smaller than 1."});
    EXPECT_TRUE(owned().empty());
    EXPECT_TRUE(plain().empty());
}

TEST_F(MIDISequenceFlatteningRawTest, UserDataIsTakenAsItStandsAndAnnounced)
{
    add(userEvent({1, 2, 3, 0xAB}));
    EXPECT_EQ(said(), Lines{" U S E R E V E N T : length = 4 :  1  2  3 AB "});
    EXPECT_EQ(flatTexts(owned()), Lines{"24000 [1, 2, 3, 171]"});
    EXPECT_EQ(flatTexts(plain()), Lines{"24000 [1, 2, 3]"});
    EXPECT_EQ(owned().at(0)->meta, 0x7F);
    EXPECT_EQ(owned().at(0)->beats, 1.0);
}

TEST_F(MIDISequenceFlatteningRawTest, ASystemExclusiveIsTakenAsItStandsAndAnnounced)
{
    const auto event = add(std::make_shared<SystemExclusiveEvent>());
    event->setData(0, {0xF0, 0xF7});
    EXPECT_EQ(said(), Lines{" S Y S E X : length = 2 : F0 F7 "});
    EXPECT_EQ(flatTexts(owned()), Lines{"0 [240, 247]"});
    EXPECT_EQ(flatTexts(plain()), Lines{"0 [240, 247]"});
}

TEST_F(MIDISequenceFlatteningRawTest, UserDataThatBeginsWithZeroMakesNoEvent)
{
    add(userEvent({0, 2}));
    EXPECT_EQ(said(), (Lines{" U S E R E V E N T : length = 2 :  0  2 ", "error: data of user event is 0."}));
    EXPECT_TRUE(owned().empty());
    EXPECT_TRUE(plain().empty());
}

TEST_F(MIDISequenceFlatteningRawTest, EmptyUserDataCountsAsBeginningWithZero)
{
    add(userEvent({}));
    EXPECT_EQ(said(), (Lines{" U S E R E V E N T : length = 0 : ", "error: data of user event is 0."}));
    EXPECT_TRUE(owned().empty());
}

TEST_F(MIDISequenceFlatteningRawTest, UserDataOfLengthZeroMakesNoEvent)
{
    add(userEvent({1}))->length = 0;
    EXPECT_EQ(said(), (Lines{" U S E R E V E N T : length = 0 :  1 ",
                             "error: user event length is smaller than 1."}));
    EXPECT_TRUE(owned().empty());
    EXPECT_TRUE(plain().empty());
}

TEST_F(MIDISequenceFlatteningRawTest, ANodeWithoutARealtimeFormIsARecordOfThreeZerosAndALine)
{
    addNote(0.0, 4.0F, 60);
    add(std::make_shared<SystemStopEvent>(1.0));
    const auto events = owned();
    ASSERT_EQ(events.size(), 3U);
    EXPECT_EQ(events[1]->array(), (Bytes{0, 0, 0}));
    EXPECT_EQ(events[1]->event().eventSampleTime, 24000);
    EXPECT_EQ(events[1]->event().eventType, 8);
    EXPECT_EQ(events[1]->beats, 0.0);
    EXPECT_EQ(events[1]->id, 1);
    EXPECT_EQ(console.take(), (Lines{"MIDISequence::Warnung: Die Spur enthält keine Daten.",
                                     "INVALID EVENT (status): AUMIDIEventEx"}));
    EXPECT_EQ(flatTexts(plain()).at(1), "24000 [0, 0, 0]");
    EXPECT_EQ(console.take(), Lines{"INVALID EVENT (status): 1"});
}

TEST_F(MIDISequenceFlatteningRawTest, EveryOtherClassTakesAPlace)
{
    add(std::make_shared<SystemTimeCodeEvent>());
    add(std::make_shared<SystemClockEvent>());
    add(std::make_shared<SystemResetEvent>());
    add(std::make_shared<TempoEvent>());
    add(std::make_shared<AExtendedNoteOnEvent>());
    add(std::make_shared<AParameterEvent>());
    add(std::make_shared<AAUPresetEvent>());
    add(std::make_shared<UnknownEvent>());
    add(std::make_shared<EventNode>());
    EXPECT_EQ(flatTexts(owned()), Lines(9, "0 [0, 0, 0]"));
    EXPECT_EQ(flatTexts(plain()), Lines(9, "0 [0, 0, 0]"));
}

} // namespace
} // namespace volvelle::test
