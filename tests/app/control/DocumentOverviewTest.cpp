#include "app/control/DocumentOverview.h"
#include "tests/app/control/ScreenFixture.h"

namespace volvelle::test {

namespace {

std::vector<std::uint8_t> bytesWith(const std::vector<FileNote>& notes)
{
    const TemporaryFolder folder;
    std::vector<std::uint8_t> bytes;
    writeFile(folder.path / "a.mid", {notes, {}, {}});
    EXPECT_EQ(readFile(folder.path / "a.mid", bytes), noErr);
    return bytes;
}

TEST(DocumentOverview, TellsPartsChordsAndLength)
{
    std::vector<FileNote> notes = struck(0.0, {60, 64, 67});
    for (FileNote& note : struck(5.0, {57, 60, 64})) {
        notes.push_back(note);
    }
    notes.push_back({0.0, 70, 1.0, 15});
    ConsoleCapture console;
    const DocumentOverview overview = overviewOf(bytesWith(notes));
    EXPECT_EQ(console.take(), std::vector<std::string>());
    EXPECT_EQ(overview.notes, 7);
    EXPECT_EQ(overview.beats, 9.0);
    EXPECT_EQ(overview.bars(), 3);
    EXPECT_EQ(overview.bpm, 120.0);
    EXPECT_EQ(overview.metaLine(), "3 bars · 7 notes");
    ASSERT_EQ(overview.parts.size(), 2U);
    EXPECT_EQ(overview.parts[0].channel, 0);
    EXPECT_EQ(overview.parts[0].notes, 6);
    EXPECT_EQ(overview.parts[1], (DocumentOverview::Part{15, "CHANNEL 15", 1}));
}

TEST(DocumentOverview, OfWhatIsNoMIDIFileIsEmpty)
{
    const DocumentOverview overview = overviewOf({1, 2, 3});
    EXPECT_EQ(overview.metaLine(), "0 bars · 0 notes");
    EXPECT_EQ(overview.description(), "0 bars · 0 notes");
    EXPECT_EQ(overview.chordAt(0.0), "");
    EXPECT_EQ(overview.positionText(0.0), "Bar 1, beat 1");
    EXPECT_EQ(overview.bpm, 120.0);
}

TEST(DocumentOverview, CountsBegunBarsAndOneThingAsOne)
{
    DocumentOverview overview;
    overview.beats = 0.5;
    overview.notes = 1;
    EXPECT_EQ(overview.metaLine(), "1 bar · 1 note");
    overview.beats = 4.0;
    EXPECT_EQ(overview.bars(), 1);
    overview.beats = 4.01;
    EXPECT_EQ(overview.bars(), 2);
    overview.beats = 1e300;
    EXPECT_EQ(overview.bars(), 25'000'000);
}

TEST(DocumentOverview, TellsTheChordThatSounds)
{
    DocumentOverview overview;
    overview.chords = {{1.0, "C"}, {4.0, "F"}};
    EXPECT_EQ(overview.chordAt(0.99), "");
    EXPECT_EQ(overview.chordAt(1.0), "C");
    EXPECT_EQ(overview.chordAt(3.99), "C");
    EXPECT_EQ(overview.chordAt(400.0), "F");
    EXPECT_EQ(overview.positionText(6.5), "Bar 2, beat 3, F");
    EXPECT_EQ(overview.positionText(-1.0), "Bar 1, beat 1");
}

TEST(DocumentOverview, IsToldInWords)
{
    DocumentOverview overview;
    overview.beats = 16.0;
    overview.notes = 3;
    overview.parts = {{0, "CHORDS", 2}, {9, "DRUMS", 1}};
    overview.chords = {{0.0, "C"}, {5.0, "F"}};
    EXPECT_EQ(overview.description(),
              "4 bars · 3 notes. CHORDS: 2 notes. DRUMS: 1 note. Chords: C at 1.1, F at 2.2");
}

TEST(DocumentOverview, ABeatIsToldByItsBar)
{
    EXPECT_EQ(barAndBeat(0.0), "1.1");
    EXPECT_EQ(barAndBeat(5.0), "2.2");
    EXPECT_EQ(barAndBeat(6.9), "2.3");
    EXPECT_EQ(barAndBeat(-3.0), "1.1");
    EXPECT_EQ(barAndBeat(1e300), "25000001.1");
}

} // namespace

} // namespace volvelle::test
