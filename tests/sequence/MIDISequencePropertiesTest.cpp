#include "tests/sequence/SequenceFixture.h"

#include <functional>

namespace volvelle::test {
namespace {

class MIDISequencePropertiesTest : public SequenceTest {
protected:
    MusicTrack track = sequence->getTrack(0);

    template <class Value>
    void store(MusicTrackProperty property, Value value)
    {
        ASSERT_EQ(MusicTrackSetProperty(track, property, &value, sizeof value), noErr);
    }

    std::string loopText()
    {
        const MusicTrackLoopInfo info = sequence->getTrackLoopInfo(track);
        return concat(info.loopDuration, " ", info.numberOfLoops);
    }
};

TEST_F(MIDISequencePropertiesTest, EveryGetGivesTheServicesValueAndALineOfDiagnosis)
{
    store(5, 6.5);
    store(0, MusicTrackLoopInfo{2.5, 3});
    store(1, -2.0);
    store(2, true);
    store(3, true);
    store(4, true);
    store(6, std::int16_t{96});
    EXPECT_EQ(sequence->getTrackLength(track), 6.5);
    EXPECT_EQ(loopText(), "2.5 3");
    EXPECT_EQ(sequence->getTrackOffsetTime(track), -2.0);
    EXPECT_TRUE(sequence->getTrackMuteStaus(track));
    EXPECT_TRUE(sequence->getTrackSoloStatus(track));
    EXPECT_TRUE(sequence->getTrackAutomatedParameters(track));
    EXPECT_EQ(sequence->getTrackTimeResolution(track), 96);
    EXPECT_EQ(sequence->diagnoses,
              (Lines{"Diagnose: Spur Länge: 6.5", "Diagnose: Loop Dauer: 2.5, Loop Anzahl: 3",
                     "Diagnose: Zeitversatz: -2.0", "Diagnose: Stumm Schaltung: true",
                     "Diagnose: Solo Schaltung: true", "Diagnose: Automations Spur: true",
                     "Diagnose: Zeitauflösung der Spur: 96"}));
    EXPECT_EQ(console.take(), Lines{});
}

TEST_F(MIDISequencePropertiesTest, AFailedGetGivesItsInitialValueAndSaysOneLine)
{
    store(5, 6.5);
    store(2, true);
    fail(Operation::MusicTrackGetProperty, someStatus, 0, -1);
    EXPECT_EQ(sequence->getTrackLength(track), 0.0);
    EXPECT_EQ(loopText(), "0.0 0");
    EXPECT_EQ(sequence->getTrackOffsetTime(track), -1.0);
    EXPECT_FALSE(sequence->getTrackMuteStaus(track));
    EXPECT_FALSE(sequence->getTrackSoloStatus(track));
    EXPECT_FALSE(sequence->getTrackAutomatedParameters(track));
    EXPECT_EQ(sequence->getTrackTimeResolution(track), 0);
    EXPECT_EQ(
        console.take(),
        (Lines{"MIDISequence::Fehler: -7. \nDie Länge der Spur konnte nicht ermittelt werden.",
               "MIDISequence::Fehler: -7. \nLoop Info für die Spur konnte nicht ermittelt werden.",
               "MIDISequence::Fehler: -7. \nDer Zeitverstaz der Spur konnte nicht ermittelt werden.",
               "MIDISequence::Fehler: -7. \nDie Stumm Schaltung der Spur konnte nicht ermittelt werden.",
               "MIDISequence::Fehler: -7. \nDie Solo Schaltung der Spur konnte nicht ermittelt werden.",
               "MIDISequence::Fehler: -7. \nDie Automations Info der Spur konnte nicht ermittelt werden.",
               "MIDISequence::Fehler: -7. \nDie Zeitauflösung der Spur konnte nicht ermittelt werden."}));
    EXPECT_EQ(sequence->diagnoses,
              (Lines{"Diagnose: Spur Länge: 0.0", "Diagnose: Loop Dauer: 0.0, Loop Anzahl: 0",
                     "Diagnose: Zeitversatz: -1.0", "Diagnose: Stumm Schaltung: false",
                     "Diagnose: Solo Schaltung: false", "Diagnose: Automations Spur: false",
                     "Diagnose: Zeitauflösung der Spur: 0"}));
}

TEST_F(MIDISequencePropertiesTest, AFailedSetSaysOneLineAndLeavesTheTrack)
{
    fail(Operation::MusicTrackSetProperty, someStatus, 0, -1);
    sequence->setTrackLength(track, 8.0);
    sequence->setOfssetTime(track, 2.0);
    sequence->setMuteStatus(track, true);
    sequence->setSoloStatus(track, true);
    sequence->setLoopInfo(track, 0.0, 2.0, 5);
    EXPECT_EQ(console.take(),
              (Lines{"MIDISequence::Fehler: -7. \nDie Länge der Spur konnte nicht gesetzt werden.",
                     "MIDISequence::Fehler: -7. \nDer Zeitverstaz der Spur konnte nicht gestzt werden.",
                     "MIDISequence::Fehler: -7. \nDie Stumm Schaltung der Spur konnte nicht gestzt werden.",
                     "MIDISequence::Fehler: -7. \nDie Stumm Schaltung der Spur konnte nicht gesetzt werden.",
                     "MIDISequence::Fehler: Die Loop Information konnte nicht zur Spur hinzugefügt werden: "
                     "-7"}));
    EXPECT_EQ(sequence->getTrackLength(track), 0.0);
    EXPECT_EQ(sequence->getTrackOffsetTime(track), 0.0);
    EXPECT_FALSE(sequence->getTrackMuteStaus(track));
    EXPECT_EQ(loopText(), "0.0 0");
}

TEST_F(MIDISequencePropertiesTest, ATrackLengthBelowZeroIsWrittenAsZeroAndTheDefaultIsFour)
{
    sequence->setTrackLength(track, 7.0);
    EXPECT_EQ(sequence->getTrackLength(track), 7.0);
    sequence->setTrackLength(track, -1.0);
    EXPECT_EQ(sequence->getTrackLength(track), 0.0);
    sequence->setTrackLength(track);
    EXPECT_EQ(sequence->getTrackLength(track), 4.0);
    EXPECT_EQ(console.take(), Lines{});
}

TEST_F(MIDISequencePropertiesTest, ALoopLastsFromItsStartToItsEndAndFourBeatsWhereItIsInverted)
{
    sequence->setLoopInfo(track, 8.0, 4.0);
    EXPECT_EQ(loopText(), "4.0 0");
    sequence->setLoopInfo(track, 4.0, 9.0, 2);
    EXPECT_EQ(loopText(), "5.0 2");
    sequence->setLoopInfo(track, 4.0, 8.0, 2);
    EXPECT_EQ(loopText(), "4.0 2");
    sequence->setLoopInfo(track, 4.0, 4.0, 1);
    EXPECT_EQ(loopText(), "0.0 1");
}

TEST_F(MIDISequencePropertiesTest, OffsetAndMuteAreWritten)
{
    sequence->setOfssetTime(track, 1.5);
    sequence->setMuteStatus(track, true);
    EXPECT_EQ(sequence->getTrackOffsetTime(track), 1.5);
    EXPECT_TRUE(sequence->getTrackMuteStaus(track));
    sequence->setMuteStatus(track, false);
    EXPECT_FALSE(sequence->getTrackMuteStaus(track));
}

TEST_F(MIDISequencePropertiesTest, ASoloRequestMutesTheTrack)
{
    sequence->setSoloStatus(track, true);
    EXPECT_FALSE(sequence->getTrackSoloStatus(track));
    EXPECT_TRUE(sequence->getTrackMuteStaus(track));
}

TEST_F(MIDISequencePropertiesTest, AutomationAndResolutionCannotBeSet)
{
    store(6, std::int16_t{240});
    sequence->setAutomatedParameters(track);
    sequence->setTimeResolution(track);
    EXPECT_FALSE(sequence->getTrackAutomatedParameters(track));
    EXPECT_EQ(sequence->getTrackTimeResolution(track), 240);
    EXPECT_EQ(console.take(), Lines{});
}

} // namespace
} // namespace volvelle::test
