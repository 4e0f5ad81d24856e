#include "tests/sequence/SequenceFixture.h"

// One node to the music sequence; the arms that write stand in the table of written events.
namespace volvelle::test {
namespace {

const std::string unassigned =
    "MIDISequence::Warnung: Ein Element konnte der Sequenz nicht zugeordnet werden.";
const std::string someInfo = "MIDISequence::Info: .";

class MIDISequenceTreeTest : public SequenceTest {
protected:
    void SetUp() override { sequence->create(4); }

    // What writing the node says; it must not write anything.
    Lines refusal(const std::shared_ptr<EventNode>& event)
    {
        sequence->eventsToMusicTrack(event, sequence->getTrack(0));
        EXPECT_EQ(contents(sequence->getTrack(0)), Lines{});
        return console.take();
    }

    static std::shared_ptr<EventNode> plainNode(std::uint8_t status)
    {
        const auto event = std::make_shared<EventNode>();
        event->statusMask = status;
        return event;
    }

    static std::shared_ptr<MetaEvent> plainMeta(std::uint8_t type)
    {
        const auto event = std::make_shared<MetaEvent>();
        event->type = type;
        return event;
    }

    const std::shared_ptr<MidiNoteEvent> note = std::make_shared<MidiNoteEvent>(1.0, 2.0F, 1, 60, 100, 10);
};

TEST_F(MIDISequenceTreeTest, ANodeNeedsASequenceATrackAndItself)
{
    const MusicTrack track = sequence->getTrack(0);
    sequence->eventsToMusicTrack(nullptr, track, 1.0);
    EXPECT_EQ(console.take(), Lines{"MIDISequence::Fehler: Das Event ist undefiniert."});
    sequence->eventsToMusicTrack(note, nullptr, 1.0);
    EXPECT_EQ(console.take(), Lines{"MIDISequence::Fehler: Die Ziel Spur ist undefiniert."});
    sequence->musicSequence = nullptr;
    sequence->eventsToMusicTrack(note, track, 1.0);
    EXPECT_EQ(console.take(), Lines{"MIDISequence::Fehler: Die Ziel Sequenz ist undefiniert."});
    EXPECT_EQ(note->position, 1.0);
}

TEST_F(MIDISequenceTreeTest, AnOffsetMovesTheNodeForGood)
{
    const MusicTrack track = sequence->getTrack(1);
    sequence->eventsToMusicTrack(note, track, 4.0);
    EXPECT_EQ(note->position, 5.0);
    sequence->eventsToMusicTrack(note, track, 4.0);
    EXPECT_EQ(note->position, 9.0);
    EXPECT_EQ(contents(track), (Lines{"5.0 note 1 60 100 10 2.0", "9.0 note 1 60 100 10 2.0"}));
}

TEST_F(MIDISequenceTreeTest, ANodeLandsOnTheTrackOfItsOwnChannel)
{
    sequence->eventsToMusicTrack(note, sequence->getTrack(3));
    EXPECT_EQ(contents(sequence->getTrack(3)), Lines{});
    EXPECT_EQ(contents(sequence->getTrack(1)), Lines{"1.0 note 1 60 100 10 2.0"});
}

TEST_F(MIDISequenceTreeTest, ANoteWithTheStatusOfANoteOffIsNotWritten)
{
    note->statusMask = 0x80;
    note->channel = 0;
    EXPECT_EQ(refusal(note), Lines{"MIDISequence::Info: Note Off nicht unterstützt."});
}

TEST_F(MIDISequenceTreeTest, ANodeOfAnotherClassThanItsStatusIsNotAssigned)
{
    for (const int status : {0x90, 0xA0, 0xB0, 0xC0, 0xD0, 0xE0, 0xF0, 0xF1, 0xF2, 0xF3, 0xF6, 0xF8, 0xFA,
                             0xFB, 0xFC, 0xFE, 0xFF}) {
        EXPECT_EQ(refusal(plainNode(static_cast<std::uint8_t>(status))), Lines{unassigned}) << status;
    }
}

TEST_F(MIDISequenceTreeTest, AUserEventIsNoSystemReset)
{
    EXPECT_EQ(refusal(std::make_shared<UserEvent>()), Lines{unassigned});
}

TEST_F(MIDISequenceTreeTest, AStatusWithoutAnArmIsPassedOver)
{
    for (const int status : {0x00, 0x91, 0xF4, 0xF5, 0xF7, 0xF9, 0xFD}) {
        EXPECT_EQ(refusal(plainNode(static_cast<std::uint8_t>(status))), Lines{someInfo}) << status;
    }
    EXPECT_EQ(refusal(std::make_shared<AAUPresetEvent>()), Lines{someInfo});
}

TEST_F(MIDISequenceTreeTest, AMetaNodeOfAnotherClassThanItsTypeIsNotAssigned)
{
    for (const int type : {1, 2, 3, 4, 5, 6, 7, 8, 9, 32, 33, 47, 81, 84, 88, 89, 127}) {
        EXPECT_EQ(refusal(plainMeta(static_cast<std::uint8_t>(type))), Lines{unassigned}) << type;
    }
}

TEST_F(MIDISequenceTreeTest, StatusesAndMetaTypesAreNotTakenForEachOther)
{
    for (const int type : {0x01, 0x51, 0x7F}) {
        EXPECT_EQ(refusal(plainNode(static_cast<std::uint8_t>(type))), Lines{someInfo}) << type;
    }
    for (const int status : {0x80, 0x90, 0xB0, 0xF0, 0xF8, 0xFF}) {
        EXPECT_EQ(refusal(plainMeta(static_cast<std::uint8_t>(status))), Lines{unassigned}) << status;
    }
}

TEST_F(MIDISequenceTreeTest, AMetaNodeOfTypeZeroThatIsNoSequenceNumberIsInvalid)
{
    EXPECT_EQ(refusal(plainMeta(0)),
              Lines{"MIDISequence::Warnung: Ein üngültiges META Element (0x00) wurde gefunden."});
}

TEST_F(MIDISequenceTreeTest, AMetaNodeOfAnUnknownTypeIsNotAssigned)
{
    EXPECT_EQ(refusal(std::make_shared<MetaUnknownEvent>(0.0, 1, std::vector<std::uint8_t>{1})),
              Lines{unassigned});
    EXPECT_EQ(refusal(plainMeta(0x60)), Lines{unassigned});
}

TEST_F(MIDISequenceTreeTest, AMetaNodeWithAStatusGoesByTheStatus)
{
    const auto text = std::make_shared<MetaTextEvent>(0.0, "A");
    text->statusMask = 0x90;
    EXPECT_EQ(refusal(text), Lines{unassigned});
}

} // namespace
} // namespace volvelle::test
