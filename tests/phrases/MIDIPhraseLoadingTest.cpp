#include "base/Checked.h"
#include "phrases/MIDIPhrase.h"
#include "tests/phrases/PhraseFiles.h"
#include "tests/phrases/PhraseMaking.h"
#include "tests/support/ConsoleCapture.h"

#include <fstream>
#include <limits>
#include <sys/stat.h>

namespace volvelle {
namespace {

using namespace test;
using Lines = std::vector<std::string>;

class MIDIPhraseLoadingTest : public testing::Test {
protected:
    void load(const PhraseFile& content, int transpose = 0)
    {
        writeFile(file, content);
        console.take();
        phrase->loadPhrase(file, transpose);
    }

    TemporaryFolder folder;
    std::filesystem::path file = folder.path / "phrase.mid";
    ConsoleCapture console;
    std::shared_ptr<MIDIPhrase> phrase = MIDIPhrase::make();
};

using MIDIPhraseLoadingDeathTest = MIDIPhraseLoadingTest;

TEST_F(MIDIPhraseLoadingTest, AFileGivesItsNotesAndControllersByPosition)
{
    phrase->generatedEvents = {noteAt(9.0, 9)};
    load({{{0.0, 60, 2.0, 1, 90, 20}, {1.0, 64, 0.5, 1}}, {{1.5, 64, 127, 1}}, {}});
    EXPECT_EQ(positionsOf(phrase->loadedEvents), (std::vector<double>{0.0, 1.0, 1.5, 1.5, 2.0}));
    EXPECT_EQ(listOf(phrase->loadedEvents, &PhraseEvent::type), (std::vector<int>{1, 1, 2, 3, 2}));
    EXPECT_EQ(listOf(phrase->loadedEvents, &PhraseEvent::channel), (std::vector<int>{0, 0, 0, 1, 0}));
    EXPECT_EQ(phrase->loadedEvents[0]->value, 90);
    EXPECT_EQ(phrase->loadedEvents[0]->value2, 20);
    EXPECT_EQ(phrase->currentURL, file);
    EXPECT_EQ(phrase->currentID, 3);
    EXPECT_EQ(phrase->currentLength, 2);
    EXPECT_EQ(numbersOf(phrase->generatedEvents), std::vector<int>{9});
    EXPECT_EQ(withoutTrackEnds(console.take()), Lines{"MIDIPhrase: Sequence length is: 1.5"});
}

TEST_F(MIDIPhraseLoadingTest, AMarkerIsToldWhileTheFileIsRead)
{
    load({{{0.0, 60}}, {}, {2.0}});
    EXPECT_EQ(withoutTrackEnds(console.take()),
              (Lines{"marker: 2.0", "MIDIPhrase: Sequence length is: 2.0"}));
    EXPECT_EQ(phrase->loadedEvents.size(), 2U);
}

TEST_F(MIDIPhraseLoadingTest, APhraseIsNeverLongerThanSixteenBeats)
{
    load({{{0.0, 60}, {15.0, 61, 2.0}, {16.0, 62}, {18.0, 63}, {20.0, 64}}, {{17.0, 7, 1}}, {}});
    EXPECT_EQ(phrase->currentLength, 16);
    EXPECT_EQ(numbersOf(phrase->loadedEvents), (std::vector<int>{60, 60, 61, 61, 62, 62}));
    EXPECT_EQ(positionsOf(phrase->loadedEvents), (std::vector<double>{0.0, 1.0, 15.0, 16.0, 16.0, 16.0}));
    EXPECT_EQ(withoutTrackEnds(console.take()), Lines{"MIDIPhrase: Sequence length is: 20.0"});
}

TEST_F(MIDIPhraseLoadingTest, ALengthIsRoundedUpToWholeBeats)
{
    load({{{3.2, 60}}, {}, {}});
    EXPECT_EQ(phrase->currentLength, 4);
    load({{{3.0, 60}}, {}, {}});
    EXPECT_EQ(phrase->currentLength, 3);
}

TEST_F(MIDIPhraseLoadingTest, ARepeatedKeyOfTheTracksOwnChannelIsDropped)
{
    const PhraseFile content{{{0.0, 60, 1.0}, {1.0, 60, 1.0}}, {}, {}};
    load(content);
    EXPECT_EQ(phrase->loadedEvents.size(), 2U);
    EXPECT_EQ(withoutTrackEnds(console.take()), (Lines{"Warning: Duplicated note event (60) at position 1.0.",
                                                       "MIDIPhrase: Sequence length is: 1.0"}));
    phrase->channel = 5;
    load(content);
    EXPECT_EQ(phrase->loadedEvents.size(), 4U);
}

TEST_F(MIDIPhraseLoadingTest, ATranspositionFoldsByAHundredAndTwentySeven)
{
    load({{{0.0, 120}, {2.0, 100}}, {{1.0, 119, 1}}, {}}, 9);
    EXPECT_EQ(numbersOf(phrase->loadedEvents), (std::vector<int>{2, 2, 119, 109, 109}));
    load({{{0.0, 3}, {2.0, 100}}, {{1.0, 3, 1}}, {}}, -6);
    EXPECT_EQ(numbersOf(phrase->loadedEvents), (std::vector<int>{124, 124, 3, 94, 94}));
    load({{{0.0, 118}}, {}, {}}, 9);
    EXPECT_EQ(numbersOf(phrase->loadedEvents), (std::vector<int>{127, 127}));
    load({{{0.0, 6}}, {}, {}}, -6);
    EXPECT_EQ(numbersOf(phrase->loadedEvents), (std::vector<int>{0, 0}));
}

TEST_F(MIDIPhraseLoadingTest, WithoutATranspositionTheKeysStayAndTheListIsSorted)
{
    load({{{0.0, 127, 8.0}, {1.0, 0, 1.0}}, {}, {}});
    EXPECT_EQ(numbersOf(phrase->loadedEvents), (std::vector<int>{127, 0, 0, 127}));
}

TEST_F(MIDIPhraseLoadingTest, EqualPositionsKeepTheOrderInWhichTheyWereFound)
{
    load({{{0.0, 60, 1.0, 1}, {1.0, 61, 1.0, 1}, {1.0, 50, 1.0, 1}}, {}, {}});
    EXPECT_EQ(numbersOf(phrase->loadedEvents), (std::vector<int>{60, 60, 61, 50, 61, 50}));
    EXPECT_EQ(listOf(phrase->loadedEvents, &PhraseEvent::type), (std::vector<int>{1, 2, 1, 1, 2, 2}));
}

TEST_F(MIDIPhraseLoadingTest, TheSecondLoaderLeavesNotesAloneInBothLists)
{
    writeFile(file, {{{0.1, 60, 1.1}, {1.4, 64, 0.5}}, {{1.5, 64, 127}}, {}});
    phrase->loadPhrase2(file, 2);
    EXPECT_EQ(listOf(phrase->loadedEvents, &PhraseEvent::type), (std::vector<int>{1, 1}));
    EXPECT_EQ(positionsOf(phrase->loadedEvents), (std::vector<double>{0.0, 1.5}));
    EXPECT_EQ(numbersOf(phrase->generatedEvents), (std::vector<int>{62, 66}));
    EXPECT_EQ(positionsOf(phrase->generatedEvents), (std::vector<double>{0.0, 1.5}));
    EXPECT_EQ(listOf(phrase->generatedEvents, &PhraseEvent::duration), (std::vector<double>{0.99, 0.495}));
}

TEST_F(MIDIPhraseLoadingTest, AMissingFileIsToldAndChangesNothing)
{
    load({{{0.0, 60}}, {}, {}});
    const auto events = phrase->loadedEvents;
    const auto sequence = phrase->sequence;
    console.take();
    phrase->loadPhrase(folder.path / "none.mid", 3);
    EXPECT_EQ(withoutTrackEnds(console.take()), Lines{"MIDIPhrase: Error: The pattern file does not exist."});
    EXPECT_EQ(phrase->loadedEvents, events);
    EXPECT_EQ(phrase->sequence, sequence);
    EXPECT_EQ(phrase->currentURL, file);
    EXPECT_EQ(numbersOf(phrase->loadedEvents), (std::vector<int>{60, 60}));
}

TEST_F(MIDIPhraseLoadingTest, WhatIsNoFileIsNotWaitedFor)
{
    const auto pipe = folder.path / "pipe.mid";
    ASSERT_EQ(mkfifo(pipe.c_str(), 0600), 0);
    console.take();
    phrase->loadPhrase(pipe, 0);
    EXPECT_EQ(withoutTrackEnds(console.take()), Lines{"MIDIPhrase: Error: The pattern file does not exist."});
    EXPECT_EQ(phrase->sequence, nullptr);
}

TEST_F(MIDIPhraseLoadingTest, AFileThatCannotBeReadLeavesThePhraseSilent)
{
    load({{{0.0, 60}}, {}, {}});
    std::ofstream(file) << "no music";
    console.take();
    phrase->loadPhrase(file, 0);
    EXPECT_TRUE(phrase->loadedEvents.empty());
    EXPECT_EQ(phrase->currentLength, 0);
    const Lines lines = console.take();
    ASSERT_FALSE(lines.empty());
    EXPECT_EQ(lines.back(), "MIDIPhrase: Sequence length is: 0.0");
}

TEST_F(MIDIPhraseLoadingTest, EachLoadReplacesTheOneBefore)
{
    load({{{0.0, 60}, {1.0, 61}}, {}, {}});
    const auto sequence = phrase->sequence;
    load({{{2.0, 62}}, {}, {}});
    EXPECT_EQ(numbersOf(phrase->loadedEvents), (std::vector<int>{62, 62}));
    EXPECT_EQ(listOf(phrase->loadedEvents, &PhraseEvent::id), (std::vector<int>{0, 0}));
    EXPECT_NE(phrase->sequence, sequence);
}

TEST_F(MIDIPhraseLoadingTest, WhatIsSavedIsTheFileAsRead)
{
    load({{{0.0, 60, 1.0, 2}}, {}, {}}, 5);
    const auto copy = folder.path / "copy.mid";
    phrase->savePhrase(copy);
    const auto other = MIDIPhrase::make();
    other->loadPhrase(copy, 0);
    EXPECT_EQ(numbersOf(other->loadedEvents), (std::vector<int>{60, 60}));
    EXPECT_EQ(numbersOf(phrase->loadedEvents), (std::vector<int>{65, 65}));
}

TEST_F(MIDIPhraseLoadingTest, BeforeTheFirstLoadThereIsNothingToSave)
{
    const auto copy = folder.path / "copy.mid";
    phrase->savePhrase(copy);
    EXPECT_FALSE(std::filesystem::exists(copy));
    EXPECT_EQ(withoutTrackEnds(console.take()), Lines{});
}

TEST_F(MIDIPhraseLoadingDeathTest, ANumberOutsideAByteAfterTheFoldStops)
{
    writeFile(file, {{{0.0, 100}}, {}, {}});
    phrase->loadPhrase(file, 282);
    EXPECT_EQ(numbersOf(phrase->loadedEvents), (std::vector<int>{255, 255}));
    EXPECT_DEATH(phrase->loadPhrase(file, 283), onlyLine(conversionMessage));
    EXPECT_DEATH(phrase->loadPhrase(file, -228), onlyLine(conversionMessage));
}

// Tampers with its sequence while it is being read.
class TamperingPhrase : public MIDIPhrase {
public:
    void foundNoteEvent(const std::shared_ptr<MidiNoteEvent>& /*event*/) override
    {
        if (takeAway) {
            kept = std::move(sequence);
        } else if (emptyField) {
            sequence = nullptr;
        } else {
            sequence->sequenceLength = length;
        }
    }

    double length = 0.0;
    bool takeAway = false;
    bool emptyField = false;
    std::shared_ptr<MIDISequence16> kept;
};

TEST_F(MIDIPhraseLoadingDeathTest, ALengthThatIsNoIntegerStops)
{
    writeFile(file, {{{0.0, 100}}, {}, {}});
    const auto tampering = std::make_shared<TamperingPhrase>();
    for (const double length : {std::numeric_limits<double>::infinity(), 1e300}) {
        tampering->length = length;
        EXPECT_DEATH(tampering->loadPhrase(file, 0), onlyLine(conversionMessage));
    }
}

TEST_F(MIDIPhraseLoadingDeathTest, ASequenceThatIsGoneAfterTheReadingStops)
{
    writeFile(file, {{{0.0, 100}}, {}, {}});
    const auto tampering = std::make_shared<TamperingPhrase>();
    tampering->takeAway = true;
    EXPECT_DEATH(tampering->loadPhrase(file, 0), onlyLine(implicitNilMessage));
}

TEST_F(MIDIPhraseLoadingDeathTest, ASequenceThatIsDroppedInTheReadingStops)
{
    const auto tampering = std::make_shared<TamperingPhrase>();
    tampering->emptyField = true;
    writeFile(file, {{{0.0, 100}, {1.0, 101}, {2.0, 102, 1.0, 3}}, {}, {}});
    EXPECT_DEATH(tampering->loadPhrase(file, 0), onlyLine(implicitNilMessage));
}

TEST_F(MIDIPhraseLoadingTest, AFileLongerThanAnIntegersBeatsLasts16)
{
    std::string bytes("MThd\0\0\0\6\0\0\0\1\0\1MTrk\0\0\0\107\0\x90\x3C\x64", 26);
    for (int i = 0; i < 9; ++i) {
        bytes += "\xFF\xFF\xFF\x7F\xB0\x07\x64";
    }
    bytes += std::string("\0\xFF\x2F\0", 4);
    std::ofstream(file) << bytes;
    phrase->loadPhrase(file, 0);
    EXPECT_EQ(phrase->sequence->getLength(), 9.0 * 0x0FFFFFFF);
    EXPECT_EQ(phrase->currentLength, 16);
    EXPECT_EQ(numbersOf(phrase->loadedEvents), (std::vector<int>{60, 60}));
}

} // namespace
} // namespace volvelle
