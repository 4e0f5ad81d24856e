#include "tests/sequence/SequenceFixture.h"

#include "midi/MIDIRawDataExtension.h"

// A sequence that derives from MIDISequence replaces what others of its operations call.
namespace volvelle::test {
namespace {

// Notes the calls and does nothing else, save the walk.
class OverridingSequence : public MIDISequence {
public:
    Lines calls;

    void createNoteMessage(const std::shared_ptr<MidiNoteEvent>& event) override
    {
        calls.push_back(concat("createNoteMessage ", event->position));
    }

    void createSystemStartMessage(const std::shared_ptr<SystemStartEvent>& event) override
    {
        calls.push_back(concat("createSystemStartMessage ", event->position));
    }

    void createMetaTextMessage(const std::shared_ptr<MetaTextEvent>& event) override
    {
        calls.push_back(concat("createMetaTextMessage ", event->position));
    }

    void iterateEvents(const MusicTrack& track, int index) override
    {
        calls.push_back(concat("iterateEvents ", index));
        MIDISequence::iterateEvents(track, index);
    }

    void ensureSongLength(double length) override { calls.push_back(concat("ensureSongLength ", length)); }

    void fillMetaData(const MIDIMetaEvent* source, UserEvent& /*dest*/) override
    {
        calls.push_back(concat("fillMetaData ", source->metaEventType));
    }

    void fillSysExData(const MIDIRawData* source, UserEvent& /*dest*/) override
    {
        calls.push_back(concat("fillSysExData ", source->length));
    }

    void fillUserData(const MusicEventUserData* source, UserEvent& /*dest*/) override
    {
        calls.push_back(concat("fillUserData ", source->length));
    }

    void removeTempoEvents(const MusicTrack& /*track*/) override { calls.emplace_back("removeTempoEvents"); }

    std::vector<std::shared_ptr<AUMIDIEventEx>> getTempoEvents(const MusicTrack& /*track*/,
                                                               double samplerate) override
    {
        calls.push_back(concat("getTempoEvents ", samplerate));
        return {};
    }
};

class MIDISequenceOverridingTest : public testing::Test {
protected:
    OverridingSequence sequence;
    MusicTrack track = sequence.getTrack(0);
    ConsoleCapture console;
};

TEST_F(MIDISequenceOverridingTest, AnEventGoesThroughTheMessageOperation)
{
    sequence.createNoteEvent(1.0, 0, 60, 100, 0, 1.0F);
    sequence.createSystemStartEvent(2.0);
    sequence.createMetaTextEvent(3.0, "A");
    EXPECT_EQ(sequence.calls,
              (Lines{"createNoteMessage 1.0", "createSystemStartMessage 2.0", "createMetaTextMessage 3.0"}));
    EXPECT_TRUE(sequence.isEmpty(track));
}

TEST_F(MIDISequenceOverridingTest, TheTreeGoesThroughTheMessageOperations)
{
    TrackNode& node = *sequence.sequenceNode->tracks.at(0);
    node.addEvent(std::make_shared<MidiNoteEvent>());
    node.addEvent(std::make_shared<SystemStartEvent>(1.0));
    node.addEvent(std::make_shared<MetaTextEvent>(2.0, "A"));
    sequence.sequenceNodeToMusicSequence();
    EXPECT_EQ(sequence.calls, (Lines{"removeTempoEvents", "createNoteMessage 0.0",
                                     "createSystemStartMessage 1.0", "createMetaTextMessage 2.0"}));
    EXPECT_TRUE(sequence.isEmpty(track));
}

TEST_F(MIDISequenceOverridingTest, WritingGoesThroughTheSongLength)
{
    sequence.createControllerEvent(1.0, 0, 7, 100);
    sequence.createSysExEvent(2.0, 0, {});
    sequence.createMetaEvent(3.0, 1, {1}, META_TEXT);
    sequence.createExtraEvent(4.0);
    EXPECT_EQ(sequence.calls, (Lines{"ensureSongLength 1.0", "ensureSongLength 2.0", "ensureSongLength 3.0",
                                     "ensureSongLength 4.0"}));
}

TEST_F(MIDISequenceOverridingTest, ReadingGoesThroughTheWalkAndTheFilling)
{
    const MyMetaEvent text(META_TEXT, {65});
    MusicTrackNewMetaEvent(track, 0.0, reinterpret_cast<const MIDIMetaEvent*>(text.mem));
    const MyMIDIRawData raw({0xF0, 0xF7});
    MusicTrackNewMIDIRawDataEvent(track, 1.0, raw.ptr);
    const MyMusicEventUserData user({1, 2, 3});
    MusicTrackNewUserEvent(track, 2.0, user.ptr);
    sequence.musicSequenceToSequenceNode();
    EXPECT_EQ(sequence.calls,
              (Lines{"iterateEvents -1", "iterateEvents 0", "ensureSongLength 0.0", "fillMetaData 1",
                     "ensureSongLength 1.0", "fillSysExData 2", "ensureSongLength 2.0", "fillUserData 3"}));
}

TEST_F(MIDISequenceOverridingTest, FlatteningGoesThroughTheTempoEvents)
{
    EXPECT_TRUE(sequence.nodesToAUMIDIEvent(48000.0, 0).empty());
    EXPECT_EQ(sequence.calls, Lines{"getTempoEvents 48000.0"});
}

} // namespace
} // namespace volvelle::test
