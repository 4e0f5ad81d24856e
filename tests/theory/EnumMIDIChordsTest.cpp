#include "theory/EnumMIDIChords.h"
#include "base/Text.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <unordered_set>

namespace volvelle {
namespace {

// Row, short name, long name, intervals.
const std::vector<std::string> chordTable = {
    "0|8|(8) Base Key|0",
    "1|5|5th|0 7",
    "2|M|Major|0 4 7",
    "3|m|Minor|0 3 7",
    "4|o|Diminished|0 3 6",
    "5|+|Augmented|0 4 8",
    "6|sus2|Suspended 2nd|0 2 7",
    "7|sus4|Suspended 4th|0 5 7",
    "8|-5|Flat 5th|0 4 6",
    "9|6|6th|0 4 7 9",
    "10|m6|Minor 6th|0 3 7 9",
    "11|7|7th|0 4 7 10",
    "12|m7|Minor 7th|0 3 7 10",
    "13|o7|Diminished 7th|0 3 6 9",
    "14|M7|Major 7th|0 4 7 11",
    "15|m,M7|Minor, Major 7th|0 3 7 11",
    "16|add9|Added 9th|0 4 7 14",
    "17|madd9|Minor Added 9th|0 3 7 14",
    "18|add11|Added 11th|0 4 7 17",
    "19|madd11|Minor Added 11th|0 3 7 17",
    "20|add13|Added 13th|0 4 7 21",
    "21|madd13|Minor Added 13th|0 3 7 21",
    "22|7sus2|7th Suspended 2nd|0 2 7 10",
    "23|7sus4|7th Suspended 4th|0 5 7 10",
    "24|7-5|7th -5|0 4 6 10",
    "25|7+5|7th +5|0 4 8 10",
    "26|m7-5|Minor 7th -5|0 3 6 10",
    "27|m7+5|Minor 7th +5|0 3 8 10",
    "28|M7sus2|Major 7th Suspended 2nd|0 2 7 11",
    "29|M7sus4|Major 7th Suspended 4th|0 5 7 11",
    "30|M7-5|Major 7th -5|0 4 6 11",
    "31|M7+5|Major 7th +5|0 4 8 11",
    "32|m,M7-5|Minor, Major 7th -5|0 3 6 11",
    "33|m,M7+5|Minor, Major 7th +5|0 3 8 11",
    "34|7/6|Seven-Six|0 4 7 9 10",
    "35|9|9th|0 4 7 10 14",
    "36|m9|Minor 9th|0 3 7 10 14",
    "37|-9|Flat 9th|0 4 7 10 13",
    "38|m-9|Minor Flat 9th|0 3 7 10 13",
    "39|+9|Augmented 9th|0 4 7 10 15",
    "40|9/6|Nine-Six|0 4 7 9 14",
    "41|m9/6|Minor Nine Six|0 3 7 9 14",
    "42|M9|Major 9th|0 4 7 11 14",
    "43|9sus4|9th Suspended 4th|0 5 7 10 14",
    "44|9-5|9th -5|0 4 6 10 14",
    "45|9+5|9th +5|0 4 8 10 14",
    "46|97|9th 7|0 4 7 10 14",
    "47|m9-5|Minor 9th -5|0 3 6 10 14",
    "48|m9+5|Minor 9th +5|0 3 8 10 14",
    "49|m97|Minor 9th|0 3 7 10 14",
    "50|-9sus4|Flat 9th Suspended 4th|0 5 7 10 13",
    "51|-9-5|Flat 9th -5|0 4 6 10 13",
    "52|-9+5|Flat 9th +5|0 4 8 10 13",
    "53|-97|Flat 9th 7|0 4 7 10 13",
    "54|m-9-5|Minor Flat 9th -5|0 3 6 10 13",
    "55|m-9+5|Minor Flat 9th +5|0 3 8 10 13",
    "56|m-97|Minor Flat 9th 7|0 3 7 10 13",
    "57|9sus4|Augmented 9th sus4|0 5 7 10 15",
    "58|9+-5|Augmented 9th -5|0 4 6 10 15",
    "59|9++5|Augmented 9th +5|0 4 8 10 15",
    "60|9+7|Augmented 9th 7|0 4 7 10 15",
    "61|11|11th|0 4 7 10 14 17",
    "62|n11|Minor 11th|0 3 7 10 14 17",
    "63|11+|Augmented 11th|0 4 7 10 14 18",
    "64|m11+|Minor Augmented 11th|0 3 7 10 14 18",
    "65|M11|Major 11th|0 4 7 11 14 17",
    "66|11-5|11th -5|0 4 6 10 14 17",
    "67|11+5|11th +5|0 4 8 10 14 17",
    "68|117|11th 7|0 4 7 10 14 17",
    "69|11-9|11th -9|0 4 7 10 13 17",
    "70|11+9|11th +9|0 4 7 10 15 17",
    "71|m11-5|Minor 11th -5|0 3 6 10 14 17",
    "72|m11+5|Minor 11th +5|0 3 8 10 14 17",
    "73|m117|Minor 11th 7|0 3 7 10 14 17",
    "74|m11-9|Minor 11th -9|0 3 7 10 13 17",
    "75|11++5|Augmented 11th +5|0 4 8 10 14 18",
    "76|11+7|Augmented 11th 7|0 4 7 10 14 18",
    "77|11+-9|Augmented 11th -9|0 4 7 10 13 18",
    "78|11++9|Augmented 11th +9|0 4 7 10 15 18",
    "79|m11++5|Minor Augmented 11th +5|0 3 8 10 14 18",
    "80|m11+7|Minor Augmented 11th 7|0 3 7 10 14 18",
    "81|m11+-9|Minor Augmented 11th -9|0 3 7 10 13 18",
    "82|13|13th|0 4 7 10 14 17 21",
    "83|m13|Minor 13th|0 3 7 10 14 17 21",
    "84|13#11|13th Augmented 11th|0 4 7 10 14 18 21",
    "85|m13#11|Minor 13th Augmented 11th|0 3 7 10 14 18 21",
    "86|M13|Major 13th|0 4 7 11 14 17 21",
    "87|13-5|13th -5|0 4 6 10 14 17 21",
    "88|13+5|13th +5|0 4 8 10 14 17 21",
    "89|137|13th 7|0 4 7 10 14 17 21",
    "90|13-9|13th -9|0 4 7 10 13 17 21",
    "91|13+9|13th +9|0 4 7 10 15 17 21",
    "92|m13-5|Minor 13th -5|0 3 6 10 14 17 21",
    "93|m13+5|Minor 13th +5|0 3 8 10 14 17 21",
    "94|m137|Minor 13th 7|0 3 7 10 14 17 21",
    "95|m13-9|Minor 13th -9|0 3 7 10 13 17 21",
    "96|13#11+5|13th Augmented 11th +5|0 4 8 10 14 18 21",
    "97|13#117|13th Augmented 11th 7|0 4 7 10 14 18 21",
    "98|13#11-9|13th Augmented 11th -9|0 4 7 10 13 18 21",
    "99|13#11+9|13th Augmented 11th +9|0 4 7 10 15 18 21",
    "100|m13#11-5|Minor 13th Augmented 11th -5|0 3 8 10 14 18 21",
    "101|m13#117|Minor 13th Augmented 11th 7|0 3 7 10 14 18 21",
    "102|m13#11-9|Minor 13th Augmented 11th -9|0 3 7 10 13 18 21",
};

std::string rowText(int row)
{
    std::string result =
        concat(row, "|", EnumMIDIChords::getShortName(row), "|", EnumMIDIChords::getLongName(row));
    char separator = '|';
    for (const int interval : EnumMIDIChords::getRule(row)) {
        result += separator + text(interval);
        separator = ' ';
    }
    return result;
}

TEST(EnumMIDIChords, HoldTheWholeTable)
{
    ASSERT_EQ(chordTable.size(), 103U);
    for (int row = 0; row < 103; ++row) {
        EXPECT_EQ(rowText(row), chordTable[static_cast<std::size_t>(row)]);
    }
}

TEST(EnumMIDIChords, AreEmptyOutsideTheTable)
{
    for (const int row : {-1, 103, 1000}) {
        EXPECT_EQ(EnumMIDIChords::getShortName(row), "");
        EXPECT_EQ(EnumMIDIChords::getLongName(row), "");
        EXPECT_TRUE(EnumMIDIChords::getRule(row).empty());
    }
}

TEST(EnumMIDIChords, BeginEveryRuleAtTheRootAndClimb)
{
    for (int row = 0; row < 103; ++row) {
        const std::vector<int> rule = EnumMIDIChords::getRule(row);
        ASSERT_FALSE(rule.empty());
        EXPECT_EQ(rule.front(), 0);
        EXPECT_TRUE(std::is_sorted(rule.begin(), rule.end())) << row;
        EXPECT_LE(rule.back(), 21);
    }
}

TEST(EnumMIDIChords, RepeatTheIntervalsOfEarlierRows)
{
    const std::vector<std::pair<int, int>> twins = {{46, 35}, {49, 36}, {53, 37}, {56, 38}, {60, 39},
                                                    {68, 61}, {73, 62}, {76, 63}, {80, 64}, {89, 82},
                                                    {94, 83}, {97, 84}, {101, 85}};
    for (const auto& [later, earlier] : twins) {
        EXPECT_EQ(EnumMIDIChords::getRule(later), EnumMIDIChords::getRule(earlier)) << later;
    }
    EXPECT_EQ(EnumMIDIChords::getShortName(57), EnumMIDIChords::getShortName(43));
    EXPECT_EQ(EnumMIDIChords::getLongName(49), EnumMIDIChords::getLongName(36));
    EXPECT_EQ(EnumMIDIChords::getShortName(62), "n11");
    EXPECT_EQ(EnumMIDIChords::getRule(100)[2], 8);
}

TEST(EnumMIDIChords, CountTheirCasesFromZero)
{
    EXPECT_EQ(EnumMIDIChords(EnumMIDIChords::C8).rawValue(), 0);
    EXPECT_EQ(EnumMIDIChords(EnumMIDIChords::C7).rawValue(), 6);
    EXPECT_EQ(EnumMIDIChords(EnumMIDIChords::CSus2).rawValue(), 9);
    EXPECT_EQ(EnumMIDIChords(EnumMIDIChords::C_5).rawValue(), 11);
    EXPECT_EQ(EnumMIDIChords(EnumMIDIChords::Cm6).rawValue(), 13);
    EXPECT_EQ(EnumMIDIChords(EnumMIDIChords::NUMBEROFCHORDSINKEY).rawValue(), 14);
    EXPECT_EQ(*EnumMIDIChords::fromRawValue(14), EnumMIDIChords::NUMBEROFCHORDSINKEY);
    EXPECT_FALSE(EnumMIDIChords::fromRawValue(15));
    EXPECT_FALSE(EnumMIDIChords::fromRawValue(-1));
    const std::unordered_set<EnumMIDIChords> set = {EnumMIDIChords::CM, EnumMIDIChords::Cm};
    EXPECT_EQ(set.size(), 2U);
}

TEST(EnumMIDIChords, TakeOneOctaveOffAnElement)
{
    EXPECT_EQ(EnumMIDIChords::limitToOctave({0, 11, 12, 14, 24}), (std::vector<int>{0, 11, 0, 2, 12}));
    EXPECT_TRUE(EnumMIDIChords::limitToOctave({}).empty());
    EXPECT_EQ(EnumMIDIChords::limitToOctave({3, -1}), std::vector<int>{3});
}

TEST(EnumMIDIChordsDeathTest, StopBehindANegativeElement)
{
    EXPECT_DEATH(EnumMIDIChords::limitToOctave({3, -1, 4}), "Index out of range");
}

} // namespace
} // namespace volvelle
