#include "theory/MIDINotes.h"

#include <gtest/gtest.h>

#include <limits>
#include <unordered_set>

namespace volvelle {
namespace {

MIDINote noteWithIndex(int index)
{
    MIDINote note;
    note.index = index;
    return note;
}

void expectNote(const MIDINote& note, int index, int noteIndex, int octaveIndex, const std::string& name)
{
    EXPECT_EQ(note.index, index);
    EXPECT_EQ(note.noteIndex, noteIndex);
    EXPECT_EQ(note.octaveIndex, octaveIndex);
    EXPECT_EQ(note.name, name);
}

TEST(EnumMIDINotes, NamesTheTwelvePitchClassesOnly)
{
    const std::vector<std::string> names = {"C", "C#", "D", "D#", "E", "F", "F#", "G", "G#", "A", "A#", "B"};
    for (int i = 0; i < 12; ++i) {
        EXPECT_EQ(EnumMIDINotes::getName(i), names[static_cast<std::size_t>(i)]);
    }
    EXPECT_EQ(EnumMIDINotes::getName(12), "");
    EXPECT_EQ(EnumMIDINotes::getName(-1), "");
    EXPECT_EQ(EnumMIDINotes::getName(60), "");
}

TEST(EnumMIDINotes, ExistFor0To11)
{
    EXPECT_EQ(*EnumMIDINotes::fromRawValue(0), EnumMIDINotes::C);
    EXPECT_EQ(*EnumMIDINotes::fromRawValue(6), EnumMIDINotes::F_);
    EXPECT_EQ(*EnumMIDINotes::fromRawValue(11), EnumMIDINotes::B);
    EXPECT_EQ(EnumMIDINotes(EnumMIDINotes::A).rawValue(), 9);
    EXPECT_FALSE(EnumMIDINotes::fromRawValue(12));
    EXPECT_FALSE(EnumMIDINotes::fromRawValue(-1));
    const std::unordered_set<EnumMIDINotes> set = {EnumMIDINotes::C, EnumMIDINotes::C_, EnumMIDINotes::C};
    EXPECT_EQ(set.size(), 2U);
}

TEST(EnumMIDINotes, KnowABlackKeyByItsName)
{
    EXPECT_TRUE(EnumMIDINotes::isBlackKey("F#"));
    EXPECT_FALSE(EnumMIDINotes::isBlackKey("F"));
    EXPECT_FALSE(EnumMIDINotes::isBlackKey(""));
}

TEST(MIDINote, StartsBelowTheRange)
{
    MIDINote note;
    expectNote(note, -1, 0, -3, "C");
    EXPECT_FALSE(note.isSharp());
    note.transpose(1);
    expectNote(note, 0, 0, 0, "C");
}

TEST(MIDINote, WrapsWithin128Notes)
{
    MIDINote up = noteWithIndex(120);
    up.transpose(10);
    expectNote(up, 2, 2, 0, "D");
    MIDINote down = noteWithIndex(5);
    down.transpose(-7);
    expectNote(down, 126, 6, 10, "");
}

TEST(MIDINote, LosesItsNameFromNote12On)
{
    MIDINote note = noteWithIndex(0);
    note.transpose(11);
    expectNote(note, 11, 11, 0, "B");
    note.transpose(1);
    expectNote(note, 12, 0, 1, "");
}

TEST(MIDINote, StaysWhereTheTranspositionIsTooGreat)
{
    for (const int value : {128, -128, std::numeric_limits<int>::max(), std::numeric_limits<int>::min()}) {
        MIDINote note;
        note.transpose(value);
        expectNote(note, -1, 0, -3, "C");
    }
    MIDINote note = noteWithIndex(0);
    note.transpose(127);
    EXPECT_EQ(note.index, 127);
}

TEST(MIDINote, IsSharpByItsName)
{
    MIDINote note = noteWithIndex(0);
    note.transpose(1);
    EXPECT_EQ(note.name, "C#");
    EXPECT_TRUE(note.isSharp());
}

TEST(MIDINoteDeathTest, StopsWhereTheNoteNumberOverflows)
{
    MIDINote note = noteWithIndex(std::numeric_limits<int>::max());
    EXPECT_DEATH(note.transpose(1), "Arithmetic overflow");
}

TEST(MIDINotesDeathTest, CannotBeMade)
{
    EXPECT_DEATH(MIDIOctave(), "Index out of range");
    EXPECT_DEATH(MIDINotes(), "Index out of range");
    EXPECT_DEATH(MIDINotes::sharedInstance(), "Index out of range");
}

} // namespace
} // namespace volvelle
