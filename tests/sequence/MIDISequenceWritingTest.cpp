#include "tests/sequence/SequenceFixture.h"

namespace volvelle::test {
namespace {

class MIDISequenceWritingTest : public SequenceTest {};

using MIDISequenceWritingDeathTest = MIDISequenceWritingTest;

TEST_F(MIDISequenceWritingTest, ANotesDurationDoesNotLengthenTheSong)
{
    sequence->create(3);
    sequence->createNoteEvent(8.0, 2, 60, 100, 0, 4.0F);
    EXPECT_EQ(sequence->getLength(), 8.0);
}

TEST_F(MIDISequenceWritingTest, TheSongLengthNeverShrinks)
{
    sequence->ensureSongLength(4.0);
    sequence->ensureSongLength(2.0);
    EXPECT_EQ(sequence->getLength(), 4.0);
    sequence->ensureSongLength(4.5);
    EXPECT_EQ(sequence->getLength(), 4.5);
}

TEST_F(MIDISequenceWritingDeathTest, ANoteOnAChannelWithoutATrackStops)
{
    sequence->create(3);
    EXPECT_STOP(sequence->createNoteEvent(0.0, 5, 60, 100, 0, 1.0F),
                concat("Warnung: Der Spur Index wurde auf das Maximum (3) gesetzt. \n", nilMessage),
                reported("MIDISequence::Fehler: -10859. \nFür den Index konnte keine Spur gefunden werden.",
                         -10859, "Falscher Spur Index."));
}

TEST_F(MIDISequenceWritingDeathTest, WritingForAListenerStopsWhereNobodySharesTheSequence)
{
    MIDISequence alone;
    alone.createNoteEvent(0.0, 0, 60, 100, 0, 1.0F);
    EXPECT_EQ(contents(alone.getTrack(0)), Lines{"0.0 note 0 60 100 0 1.0"});
    alone.delegate = listener;
    EXPECT_STOP(alone.createNoteEvent(1.0, 0, 60, 100, 0, 1.0F),
                "A sequence with a listener must be held by a shared pointer", Lines{});
    alone.musicSequenceToSequenceNode();
    EXPECT_EQ(listener->names(), std::vector<std::string>{"foundNoteEvent"});
}

TEST_F(MIDISequenceWritingDeathTest, WritingWithoutATreeStops)
{
    sequence->sequenceNode = nullptr;
    EXPECT_STOP(sequence->createNoteEvent(0.0, 0, 60, 100, 0, 1.0F), nilMessage);
    EXPECT_STOP(sequence->createMetaTextEvent(0.0, "A"), nilMessage);
}

TEST_F(MIDISequenceWritingDeathTest, WritingNoNodeStops)
{
    EXPECT_STOP(sequence->createNoteMessage(nullptr), nilMessage);
    EXPECT_STOP(sequence->createPolyphonicPressureMessage(nullptr), nilMessage);
    EXPECT_STOP(sequence->createControllerMessage(nullptr), nilMessage);
    EXPECT_STOP(sequence->createProgramChangeMessage(nullptr), nilMessage);
    EXPECT_STOP(sequence->createAfterTouchMessage(nullptr), nilMessage);
    EXPECT_STOP(sequence->createPitchWheelMessage(nullptr), nilMessage);
    EXPECT_STOP(sequence->createSysExMessage(nullptr), nilMessage);
    EXPECT_STOP(sequence->createSystemTimeCodeMessage(nullptr), nilMessage);
    EXPECT_STOP(sequence->createSystemSongPositionPointerMessage(nullptr), nilMessage);
    EXPECT_STOP(sequence->createSystemSongSelectMessage(nullptr), nilMessage);
    EXPECT_STOP(sequence->createSystemTuneRequestMessage(nullptr), nilMessage);
    EXPECT_STOP(sequence->createSystemTimingClockMessage(nullptr), nilMessage);
    EXPECT_STOP(sequence->createSystemStartMessage(nullptr), nilMessage);
    EXPECT_STOP(sequence->createSystemContinueMessage(nullptr), nilMessage);
    EXPECT_STOP(sequence->createSystemStopMessage(nullptr), nilMessage);
    EXPECT_STOP(sequence->createSystemActiveSensingMessage(nullptr), nilMessage);
    EXPECT_STOP(sequence->createSystemResetMessage(nullptr), nilMessage);
    EXPECT_STOP(sequence->createMetaSequenceNumberMessage(nullptr), nilMessage);
    EXPECT_STOP(sequence->createMetaTextMessage(nullptr), nilMessage);
    EXPECT_STOP(sequence->createMetaCopyrightMessage(nullptr), nilMessage);
    EXPECT_STOP(sequence->createMetaTrackNameMessage(nullptr), nilMessage);
    EXPECT_STOP(sequence->createMetaInstrumentNameMessage(nullptr), nilMessage);
    EXPECT_STOP(sequence->createMetaLyricsMessage(nullptr), nilMessage);
    EXPECT_STOP(sequence->createMetaMarkerMessage(nullptr), nilMessage);
    EXPECT_STOP(sequence->createMetaCuePointMessage(nullptr), nilMessage);
    EXPECT_STOP(sequence->createMetaProgramNameMessage(nullptr), nilMessage);
    EXPECT_STOP(sequence->createMetaDeviceNameMessage(nullptr), nilMessage);
    EXPECT_STOP(sequence->createMetaChannelPrefixMessage(nullptr), nilMessage);
    EXPECT_STOP(sequence->createMetaMidiPortMessage(nullptr), nilMessage);
    EXPECT_STOP(sequence->createMetaEndOfTrackMessage(nullptr), nilMessage);
    EXPECT_STOP(sequence->createMetaSetTempoMessage(nullptr), nilMessage);
    EXPECT_STOP(sequence->createMetaSMTPOffsetMessage(nullptr), nilMessage);
    EXPECT_STOP(sequence->createMetaTimeSignatureMessage(nullptr), nilMessage);
    EXPECT_STOP(sequence->createMetaKeySignatureMessage(nullptr), nilMessage);
    EXPECT_STOP(sequence->createMetaSequencerSpecificMessage(nullptr), nilMessage);
}

TEST_F(MIDISequenceWritingTest, AByteThatTheServiceRefusesIsReported)
{
    sequence->createNoteEvent(0.0, 0, 60, 200, 0, 1.0F);
    EXPECT_EQ(
        console.take(),
        reported("MIDISequence::Fehler: -10853. \nEs konnte keine neue Note für Kanal 0 erzeugt werden.",
                 -10853, "Ungültiger Event Typ."));
    EXPECT_EQ(describe(*sequence->sequenceNode->tracks[0]), Lines{"MidiNoteEvent 0.0 0: 60 200 0 1.0"});
}

TEST_F(MIDISequenceWritingTest, ASystemExclusiveWithoutBytesWarnsAndIsNotWritten)
{
    sequence->delegate = listener;
    sequence->createSysExEvent(2.0, 3, {});
    EXPECT_EQ(console.take(), Lines{"MIDISequence::Warnung: Es befinden sich keine Einträge im übergebenen "
                                    "Daten Objekt."});
    EXPECT_EQ(contents(sequence->getTrack(0)), Lines{});
    EXPECT_TRUE(listener->calls.empty());
    EXPECT_EQ(describe(*sequence->sequenceNode->tracks[0]), Lines{"SystemExclusiveEvent 2.0 0: 0 []"});
    EXPECT_EQ(sequence->getLength(), 2.0);
}

TEST_F(MIDISequenceWritingTest, TheListenerIsCalledInTheOrderOfWriting)
{
    sequence->delegate = listener;
    sequence->createNoteEvent(4.0, 0, 60, 100, 0, 1.0F);
    sequence->createControllerEvent(2.0, 0, 7, 1);
    sequence->createMetaMarkerEvent(0.0, "A");
    mainQueue().drain();
    EXPECT_EQ(listener->names(),
              (std::vector<std::string>{"foundNoteEvent", "foundControllerEvent", "foundMetaMarkerEvent"}));
}

TEST_F(MIDISequenceWritingDeathTest, AnEmptiedListenerFieldStopsTheQueuedCall)
{
    sequence->delegate = listener;
    sequence->createNoteEvent(4.0, 0, 60, 100, 0, 1.0F);
    sequence->delegate.reset();
    EXPECT_STOP(mainQueue().drain(), nilMessage);
    sequence->delegate = listener; // the closure still waits
}

TEST_F(MIDISequenceWritingTest, AListenerThatItsOwnerLetGoIsStillCalled)
{
    const std::weak_ptr<RecordingDelegate> watched = listener;
    sequence->delegate = listener;
    sequence->createNoteEvent(4.0, 0, 60, 100, 0, 1.0F);
    listener.reset();
    EXPECT_FALSE(watched.expired());
    mainQueue().drain();
    EXPECT_TRUE(watched.expired());
}

TEST_F(MIDISequenceWritingTest, TheQueuedCallGoesToTheListenerOfThatMoment)
{
    sequence->delegate = listener;
    sequence->createNoteEvent(4.0, 0, 60, 100, 0, 1.0F);
    const auto other = std::make_shared<RecordingDelegate>();
    sequence->delegate = other;
    mainQueue().drain();
    EXPECT_TRUE(listener->calls.empty());
    EXPECT_EQ(other->names(), std::vector<std::string>{"foundNoteEvent"});
}

TEST_F(MIDISequenceWritingTest, TheQueuedCallKeepsSequenceAndEventAlive)
{
    sequence->delegate = listener;
    sequence->createNoteEvent(4.0, 0, 60, 100, 0, 1.0F);
    const std::weak_ptr<ObservedSequence> watched = sequence;
    sequence.reset();
    EXPECT_FALSE(watched.expired());
    mainQueue().drain();
    EXPECT_TRUE(watched.expired());
    ASSERT_EQ(listener->calls.size(), 1U);
    EXPECT_EQ(describe(*listener->calls[0].event), "MidiNoteEvent 4.0 0: 60 100 0 1.0");
}

TEST_F(MIDISequenceWritingTest, UserAndExtraEventsOnlyLengthenTheSong)
{
    sequence->delegate = listener;
    sequence->createUserEvent(3.0);
    EXPECT_EQ(sequence->getLength(), 3.0);
    sequence->createExtraEvent(5.0);
    EXPECT_EQ(sequence->getLength(), 5.0);
    EXPECT_EQ(console.take(), Lines{});
    EXPECT_TRUE(listener->calls.empty());
    EXPECT_EQ(contents(sequence->getTrack(0)), Lines{});
    EXPECT_TRUE(sequence->sequenceNode->tracks[0]->events.empty());
}

TEST_F(MIDISequenceWritingTest, UserAndExtraEventsNeedATrack)
{
    sequence->losesTracks = true;
    sequence->createUserEvent(3.0);
    sequence->createExtraEvent(3.0);
    EXPECT_EQ(console.take(), (Lines{"MIDISequence::Fehler: Die Spur ist undefiniert.",
                                     "MIDISequence::Fehler: Die Spur ist undefiniert."}));
    EXPECT_EQ(sequence->getLength(), 0.0);
}

} // namespace
} // namespace volvelle::test
