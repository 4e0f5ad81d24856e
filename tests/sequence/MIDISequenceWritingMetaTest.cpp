#include "tests/sequence/SequenceFixture.h"

// The general form of a meta event; the particular ones stand in the table of written events.
namespace volvelle::test {
namespace {

class MIDISequenceWritingMetaTest : public SequenceTest {
protected:
    void SetUp() override { sequence->delegate = listener; }
};

using Bytes = std::vector<std::uint8_t>;

TEST_F(MIDISequenceWritingMetaTest, AGeneralMetaEventStandsOnTrackZeroWithItsType)
{
    sequence->createMetaEvent(2.0, 4, {1, 2, 3, 4}, 0x60);
    EXPECT_TRUE(listener->calls.empty());
    EXPECT_EQ(console.take(), Lines{});
    EXPECT_EQ(contents(sequence->getTrack(0)), Lines{"2.0 meta 96 [1, 2, 3, 4]"});
    EXPECT_EQ(describe(*sequence->sequenceNode->tracks[0]), Lines{"MetaEvent 2.0 0: 96 4 [1, 2, 3, 4]"});
    ASSERT_EQ(listener->names(), std::vector<std::string>{"foundMetaEvent"});
    EXPECT_EQ(listener->calls[0].event, sequence->sequenceNode->tracks[0]->events[0]);
    EXPECT_EQ(sequence->getLength(), 2.0);
}

TEST_F(MIDISequenceWritingMetaTest, AShortGeneralMetaEventOnlyLengthensTheSong)
{
    sequence->createMetaEvent(2.0, 3, {1, 2, 3, 4}, 0x60);
    sequence->createMetaEvent(1.0, -1, {1, 2, 3, 4}, 0x60);
    EXPECT_EQ(console.take(), Lines{});
    EXPECT_EQ(contents(sequence->getTrack(0)), Lines{});
    EXPECT_TRUE(listener->calls.empty());
    EXPECT_EQ(sequence->getLength(), 2.0);
}

TEST_F(MIDISequenceWritingMetaTest, AGeneralMetaEventWithoutBytesWarnsWhateverItsLength)
{
    for (const int length : {4, 0}) {
        sequence->createMetaEvent(2.0, length, {}, 0x60);
        EXPECT_EQ(console.take(), Lines{"MIDISequence::Warnung: Es befinden sich keine Einträge im "
                                        "übergebenen Daten Objekt."});
    }
    EXPECT_EQ(contents(sequence->getTrack(0)), Lines{});
    EXPECT_TRUE(listener->calls.empty());
    EXPECT_EQ(sequence->getLength(), 2.0);
}

TEST_F(MIDISequenceWritingMetaTest, AFailedGeneralMetaEventIsReported)
{
    fail(Operation::MusicTrackNewMetaEvent);
    sequence->createMetaEvent(2.0, 4, {1, 2, 3, 4}, 0x60);
    EXPECT_EQ(console.take(),
              reported("MIDISequence::Fehler: -7. \nEs konnte kein META Event erzeugt werden."));
    EXPECT_TRUE(listener->calls.empty());
    EXPECT_EQ(sequence->getLength(), 2.0);
}

TEST_F(MIDISequenceWritingMetaTest, AGeneralMetaEventNeedsATrack)
{
    sequence->losesTracks = true;
    sequence->createMetaEvent(2.0, 4, {1, 2, 3, 4}, 0x60);
    EXPECT_EQ(console.take(), Lines{"Fehler: Die Spur ist undefiniert."});
    EXPECT_EQ(sequence->getLength(), 0.0);
}

TEST_F(MIDISequenceWritingMetaTest, ARecordTakesNoMoreThan1024Bytes)
{
    sequence->createMetaSequencerSpecificEvent(0.0, 0, Bytes(1100, 7));
    EXPECT_EQ(contents(sequence->getTrack(0)), Lines{concat("0.0 meta 127 ", text(Bytes(1024, 7)))});
    EXPECT_EQ(sequence->sequenceNode->tracks[0]->getElementsOfClass<UserEvent>()[0]->data.size(), 1100U);
}

} // namespace
} // namespace volvelle::test
