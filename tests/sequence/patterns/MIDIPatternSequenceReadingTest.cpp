#include "tests/sequence/patterns/GridReadingFixture.h"

// The music sequence's way to the grid.
namespace volvelle::test {
namespace {

using MIDIPatternSequenceReadingTest = GridReadingFixture;
using MIDIPatternSequenceReadingDeathTest = MIDIPatternSequenceReadingTest;

TEST_F(MIDIPatternSequenceReadingTest, RowAndColumnSelectTheCellThatTakesWhatFollows)
{
    grid->createSection();
    putColumn(0.0, 5);
    putNote(0.0, 60);
    putRow(1.0, 1);
    putNote(1.0, 61);
    putColumn(2.0, 6);
    putNote(2.0, 62);
    grid->musicSequenceToSequenceNode();
    EXPECT_EQ(nodes(0, 5), (Lines{"MetaChannelPrefixEvent 0.0 0: 32 1 [5]", noteNode(0.0, 60)}));
    EXPECT_EQ(nodes(1, 5), (Lines{"MetaSequenceNumberEvent 1.0 0: 0 2 [1, 0]", noteNode(1.0, 61)}));
    EXPECT_EQ(nodes(1, 6), (Lines{"MetaChannelPrefixEvent 2.0 0: 32 1 [6]", noteNode(2.0, 62)}));
    EXPECT_EQ(grid->currentPattern, cell(1, 6));
    EXPECT_EQ(grid->currentPatternIndex, 1);
    EXPECT_EQ(grid->currentChannelIndex, 6);
    EXPECT_EQ(cell(1, 6)->events[1]->pattern.get(), cell(1, 6).get());
    EXPECT_EQ(describe(*grid->sequenceNode->tracks[0]), Lines{});
    EXPECT_EQ(said(), endOfTrack());
}

TEST_F(MIDIPatternSequenceReadingTest, EveryKindOfEventGoesIntoTheCurrentCell)
{
    putColumn(0.0, 2);
    const MusicTrack first = grid->getTrack(0);
    MusicTrackNewMIDIChannelEvent(first, 1.0, {0xC5, 40, 0, 0});
    MusicTrackNewMIDIChannelEvent(first, 2.0, {0xF8, 0, 0, 0});
    MusicTrackNewMIDIRawDataEvent(first, 3.0, MyMIDIRawData({0xF0, 0xF7}).ptr);
    putMeta(4.0, 0x01, {65});
    putMeta(5.0, 0x60, {});
    grid->musicSequenceToSequenceNode();
    EXPECT_EQ(nodes(0, 2),
              (Lines{"MetaChannelPrefixEvent 0.0 0: 32 1 [2]", "MidiProgramChangeEvent 1.0 5: 40",
                     "SystemClockEvent 2.0 0:", "SystemExclusiveEvent 3.0 0: 2 [240, 247]",
                     "MetaTextEvent 4.0 0: 1 1 [65]", "MetaUnknownEvent 5.0 0: 255 0 []"}));
    EXPECT_EQ(grid->getPatchForChannel(5), 40);
    EXPECT_EQ(grid->getChannelAssignment(0), 5);
    EXPECT_EQ(grid->getLength(), 5.0);
}

TEST_F(MIDIPatternSequenceReadingTest, ATrackGoesOnInTheCellOfTheTrackBefore)
{
    grid->create(2);
    putRow(8.0, 0, 0);
    putNote(1.0, 60, 1);
    grid->musicSequenceToSequenceNode();
    EXPECT_EQ(notes(), Lines{"0 0: 60 1.0, "});
}

TEST_F(MIDIPatternSequenceReadingTest, WithoutACellAnEventIsDroppedAndTheListenerHearsOfIt)
{
    const auto listener = std::make_shared<RecordingDelegate>();
    grid->delegate = listener;
    grid->MIDISequence::setTempo(90.0);
    putNote(0.0, 60);
    putColumn(1.0, 4);
    putNote(1.0, 61);
    grid->musicSequenceToSequenceNode();
    EXPECT_EQ(listener->names(), (std::vector<std::string>{"foundTempoEvent", "foundNoteEvent",
                                                           "foundMetaChannelPrefixEvent", "foundNoteEvent"}));
    EXPECT_EQ(describe(*listener->calls[0].event), "TempoEvent 0.0 255: 90.0");
    EXPECT_EQ(describe(*listener->calls[1].event), noteNode(0.0, 60));
    EXPECT_EQ(listener->calls[1].event->uid, -1);
    EXPECT_EQ(listener->calls[3].event, cell(0, 4)->events[1]);
    EXPECT_EQ(notes(), Lines{"0 4: 61 1.0, "});
    EXPECT_EQ(describe(*grid->sequenceNode->tempoTrack), Lines{});
}

TEST_F(MIDIPatternSequenceReadingTest, ReadingStartsWithoutACellAndKeepsWhatTheCellsHold)
{
    putNote(0.0, 60);
    putRow(1.0, 0);
    grid->musicSequenceToSequenceNode();
    grid->currentPatternIndex = 7;
    grid->currentChannelIndex = 7;
    grid->sequenceNode->tracks[0]->addEvent(note(1.0, 0, 60));
    grid->sequenceLength = 99.0;
    grid->musicSequenceToSequenceNode();
    const std::string row = "MetaSequenceNumberEvent 1.0 0: 0 2 [0, 0]";
    EXPECT_EQ(nodes(0, 0), (Lines{row, row}));
    EXPECT_EQ(grid->sequenceNode->tracks[0]->getEventCount(), 0);
    EXPECT_EQ(grid->getLength(), 1.0);
    EXPECT_EQ(grid->sections.size(), 1U);
}

TEST_F(MIDIPatternSequenceReadingTest, AMissingRowIsMadeWithoutALine)
{
    putRow(0.0, 3);
    putNote(0.0, 60);
    grid->musicSequenceToSequenceNode();
    EXPECT_EQ(notes(), Lines{"3 0: 60 0.0, "});
    EXPECT_EQ(sections->calls, (Lines{"created 2", "created 3", "created 4"}));
    EXPECT_EQ(said(), endOfTrack());
}

TEST_F(MIDIPatternSequenceReadingTest, RowsAreMadeUpToAThousandAndTwentyFour)
{
    putRow(0.0, 1023);
    putNote(0.0, 60);
    putRow(1.0, 1024);
    putRow(1.0, 65535);
    putNote(1.0, 61);
    grid->musicSequenceToSequenceNode();
    EXPECT_EQ(grid->sections.size(), 1024U);
    EXPECT_EQ(notes(), Lines{"1023 0: 60 0.0, 61 1.0, "});
    EXPECT_EQ(nodes(1023, 0).size(), 5U);
    EXPECT_EQ(grid->currentPatternIndex, 1023);
}

TEST_F(MIDIPatternSequenceReadingTest, AHighRowOrColumnSelectsNothing)
{
    putRow(0.0, 1024);
    putColumn(0.0, 16);
    putNote(0.0, 60);
    grid->musicSequenceToSequenceNode();
    EXPECT_EQ(grid->currentPattern, nullptr);
    EXPECT_EQ(grid->sections.size(), 1U);
    EXPECT_EQ(notes(), Lines{});
    putColumn(1.0, 15);
    putColumn(2.0, 16);
    putColumn(2.0, 255);
    putNote(3.0, 61);
    grid->musicSequenceToSequenceNode();
    EXPECT_EQ(notes(), Lines{"0 15: 61 3.0, "});
    EXPECT_EQ(nodes(0, 15).size(), 4U);
}

TEST_F(MIDIPatternSequenceReadingTest, ASelectionWithoutBytesIsReportedAndSelectsTheFirst)
{
    putRow(0.0, 1);
    putColumn(0.0, 5);
    putMeta(1.0, 0x00, {1});
    putMeta(2.0, 0x20, {});
    putNote(3.0, 60);
    grid->musicSequenceToSequenceNode();
    EXPECT_EQ(said(), join({{"Fehler: Das Sequenznummer Event ist nicht initialisiert.",
                             "Fehler: Das Prefix Event ist nicht initialisiert."},
                            endOfTrack()}));
    EXPECT_EQ(notes(), Lines{"0 0: 60 3.0, "});
}

TEST_F(MIDIPatternSequenceReadingTest, ACellThatTheListenerTakesAwayTakesTheEventsOfTheWalk)
{
    class Clearing : public SequenceFoundDelegate {
    public:
        explicit Clearing(std::shared_ptr<ObservedGrid>& watched) : grid(watched) {}

        void foundMetaChannelPrefixEvent(const std::shared_ptr<MetaChannelPrefixEvent>& /*event*/) override
        {
            kept = grid->currentPattern;
            grid->clearAllSections();
        }

        std::shared_ptr<ObservedGrid>& grid;
        std::shared_ptr<PatternNode> kept;
    };

    const auto clearing = std::make_shared<Clearing>(grid);
    grid->delegate = clearing;
    putColumn(0.0, 1);
    putNote(1.0, 60);
    grid->musicSequenceToSequenceNode();
    EXPECT_EQ(notes(), Lines{});
    EXPECT_EQ(describe(*clearing->kept), Lines{noteNode(1.0, 60)});
}

TEST_F(MIDIPatternSequenceReadingTest, AGridThatItsListenerGivesUpIsReadToItsEnd)
{
    class LettingGridGo : public SequenceFoundDelegate {
    public:
        explicit LettingGridGo(std::shared_ptr<ObservedGrid>& sequence) : holder(sequence), watched(sequence)
        {
        }

        void foundNoteEvent(const std::shared_ptr<MidiNoteEvent>& event) override
        {
            numbers.push_back(event->number);
            holder.reset();
            EXPECT_FALSE(watched.expired());
        }

        std::shared_ptr<ObservedGrid>& holder;
        std::weak_ptr<ObservedGrid> watched;
        std::vector<int> numbers;
    };

    const auto lettingGo = std::make_shared<LettingGridGo>(grid);
    grid->delegate = lettingGo;
    putRow(0.0, 0);
    putNote(1.0, 60);
    putNote(2.0, 61);
    grid->musicSequenceToSequenceNode();
    EXPECT_EQ(lettingGo->numbers, (std::vector<int>{60, 61}));
    EXPECT_TRUE(lettingGo->watched.expired());
}

TEST_F(MIDIPatternSequenceReadingTest, ADiagnosisFramesTheReadAndHeadsEachTrack)
{
    grid->create(2);
    grid->diagnoses.clear();
    grid->musicSequenceToSequenceNode();
    const std::string rule = "--------------------------------- Pattern Sequence ";
    const auto properties = [](const std::string& head) {
        return Lines{head,
                     "Diagnose: Spur Länge: 0.0",
                     "Diagnose: Loop Dauer: 0.0, Loop Anzahl: 0",
                     "Diagnose: Zeitversatz: 0.0",
                     "Diagnose: Stumm Schaltung: false",
                     "Diagnose: Solo Schaltung: false",
                     "Diagnose: Automations Spur: false",
                     "Diagnose: Die Spur enthält keine Daten."};
    };
    EXPECT_EQ(grid->diagnoses,
              join({{"\nDiagnose:", rule + "------------------------------------START",
                     "\nDiagnose: Tempo Spur :", "Diagnose: Spur Länge: 0.0",
                     "Diagnose: Loop Dauer: 0.0, Loop Anzahl: 0", "Diagnose: Zeitauflösung der Spur: 480",
                     "Diagnose: Die Spur enthält keine Daten.",
                     "Diagnose: Es wurden 2 Spuren in der MIDI Datei gefunden."},
                    properties("\nDiagnose: Spur Nr. 0:"),
                    properties("\nDiagnose: Spur Nr. 1:"),
                    {"\nDiagnose:", rule + "-------------------------------------STOP\n"}}));
    EXPECT_EQ(said(), Lines{});
}

TEST_F(MIDIPatternSequenceReadingTest, ATempoTrackThatIsNotGivenIsReportedAndTheTracksAreRead)
{
    putRow(0.0, 0);
    putNote(0.0, 60);
    fail(Operation::MusicSequenceGetTempoTrack);
    grid->musicSequenceToSequenceNode();
    EXPECT_EQ(said(), join({reported("{line} Fehler: -7. \nDie Tempo Spur konnte nicht ermittelt werden."),
                            endOfTrack()}));
    EXPECT_EQ(notes(), Lines{"0 0: 60 0.0, "});
}

TEST_F(MIDIPatternSequenceReadingTest, ACountThatIsNotGivenIsReportedAndIsNone)
{
    putRow(0.0, 0);
    fail(Operation::MusicSequenceGetTrackCount);
    grid->musicSequenceToSequenceNode();
    EXPECT_EQ(said(), reported("{line} Fehler: -7. \nDie Anzahl der Spuren konnte nicht ermittelt werden."));
    EXPECT_EQ(nodes(0, 0), Lines{});
}

TEST_F(MIDIPatternSequenceReadingTest, EachFailureTellsTheLineOfItsOwnPlace)
{
    fail(Operation::MusicSequenceGetTempoTrack);
    fail(Operation::MusicSequenceGetTrackCount);
    grid->musicSequenceToSequenceNode();
    const Lines lines = console.take();
    ASSERT_EQ(lines.size(), 8U);
    EXPECT_GT(std::stoi(lines[0]), 0);
    EXPECT_GT(std::stoi(lines[4]), std::stoi(lines[0]));
}

TEST_F(MIDIPatternSequenceReadingTest, TracksBehindTheMaximumAreNotRead)
{
    grid->create(3);
    grid->maxTracks = 2;
    putRow(0.0, 0, 0);
    putNote(0.0, 60, 1);
    putNote(0.0, 61, 2);
    grid->musicSequenceToSequenceNode();
    EXPECT_EQ(notes(), Lines{"0 0: 60 0.0, "});
    EXPECT_EQ(said(),
              join({endOfTrack(),
                    endOfTrack(),
                    {"Warnung: Die Anzahl der Spuren in der Sequenz ist größer als das Maximum: 2"}}));
}

TEST_F(MIDIPatternSequenceReadingTest, AReadWithoutASequenceIsReportedAndChangesNothing)
{
    putRow(0.0, 0);
    grid->musicSequenceToSequenceNode();
    said();
    grid->musicSequence = nullptr;
    grid->musicSequenceToSequenceNode();
    EXPECT_EQ(said(), Lines{"MIDISequence::Fehler: Die Sequenz ist undefiniert."});
    EXPECT_EQ(grid->currentPattern, cell(0, 0));
}

TEST_F(MIDIPatternSequenceReadingTest, AWalkOverNoTrackSaysSo)
{
    grid->iterateEvents(nullptr, 0);
    EXPECT_EQ(said(), Lines{"Fehler: Die Spur ist undefiniert."});
}

TEST_F(MIDIPatternSequenceReadingDeathTest, AReadWithoutATreeStops)
{
    grid->sequenceNode = nullptr;
    EXPECT_STOP(grid->musicSequenceToSequenceNode(), nilMessage);
}

} // namespace
} // namespace volvelle::test
