#include "phrases/PhraseEventWriter.h"

#include "tests/phrases/PhraseFiles.h"
#include "tests/phrases/PhraseMaking.h"

namespace volvelle {
namespace {

using namespace test;

class PhraseEventWriterTest : public testing::Test {
protected:
    std::vector<MIDISequence16::TimedMIDIEvent> written(int type, double offset = 0.0)
    {
        const auto event = eventOf(type, 3.5, 60);
        event->channel = 2;
        event->value = 90;
        event->value2 = 20;
        event->duration = 0.1;
        writePhraseEvent(*sequence, *event, offset);
        EXPECT_EQ(event->position, 3.5);
        return sequence->getTrackEvents(2);
    }

    // The one channel message that a type gives.
    std::vector<int> messageOf(int type)
    {
        const auto events = written(type);
        EXPECT_EQ(events.size(), 1U);
        EXPECT_EQ(events.at(0).eventTimeStamp, 3.5);
        const auto& message = std::get<MIDIChannelMessage>(events.at(0).event);
        return {message.status, message.data1, message.data2};
    }

    std::shared_ptr<MIDISequence16> sequence = std::make_shared<MIDISequence16>();
};

TEST_F(PhraseEventWriterTest, ANoteCarriesItsDurationInSinglePrecision)
{
    const auto events = written(PhraseEvent::noteOn);
    ASSERT_EQ(events.size(), 1U);
    EXPECT_EQ(events[0].eventTimeStamp, 3.5);
    const auto& note = std::get<MIDINoteMessage>(events[0].event);
    EXPECT_EQ(note.channel, 2);
    EXPECT_EQ(note.note, 60);
    EXPECT_EQ(note.velocity, 90);
    EXPECT_EQ(note.releaseVelocity, 20);
    EXPECT_EQ(note.duration, 0.1F);
}

TEST_F(PhraseEventWriterTest, AnOffsetMovesTheEventAndNotTheRecord)
{
    EXPECT_EQ(written(PhraseEvent::noteOn, 16.0).at(0).eventTimeStamp, 19.5);
}

TEST_F(PhraseEventWriterTest, AControllerHasItsNumberAndValue)
{
    EXPECT_EQ(messageOf(PhraseEvent::controller), (std::vector<int>{0xB2, 60, 90}));
}

TEST_F(PhraseEventWriterTest, AProgramChangeHasItsNumber)
{
    EXPECT_EQ(messageOf(PhraseEvent::programChange), (std::vector<int>{0xC2, 60, 0}));
}

TEST_F(PhraseEventWriterTest, APitchWheelHasNumberAndValueAsItsTwoBytes)
{
    EXPECT_EQ(messageOf(PhraseEvent::pitchWheel), (std::vector<int>{0xE2, 60, 90}));
}

TEST_F(PhraseEventWriterTest, AnAfterTouchHasItsNumber)
{
    EXPECT_EQ(messageOf(PhraseEvent::afterTouch), (std::vector<int>{0xD2, 60, 0}));
}

TEST_F(PhraseEventWriterTest, NoteOffsAndOtherTypesAreLeftOut)
{
    for (const int type : {PhraseEvent::noteOff, 0, 7, -1}) {
        EXPECT_TRUE(written(type).empty()) << type;
    }
    EXPECT_EQ(sequence->getLength(), 0.0);
}

} // namespace
} // namespace volvelle
