#include "scores/ChordName.h"

#include "scores/PitchNames.h"

#include <gtest/gtest.h>

#include <vector>

namespace volvelle::scores {
namespace {

std::string foundAgain(const std::string& name)
{
    const auto chord = chordNamed(name);
    return chord ? chordDetected(chord->tones()) : "no chord";
}

std::vector<std::string> rootsThatKeepTheirName(const std::string& type)
{
    std::vector<std::string> roots;
    for (int root = 0; root < 12; ++root) {
        if (foundAgain(std::string(pitchClassName(root)) + type) ==
            std::string(pitchClassName(root)) + type) {
            roots.emplace_back(pitchClassName(root));
        }
    }
    return roots;
}

TEST(ChordName, ANameIsARootAndAType)
{
    const auto chord = chordNamed("F#m7");
    ASSERT_TRUE(chord.has_value());
    EXPECT_EQ(chord->root, 6);
    EXPECT_EQ(chord->intervals, (std::vector<int>{0, 3, 7, 10}));
    EXPECT_EQ(chord->tones(), 1U << 6 | 1U << 9 | 1U << 1 | 1U << 4);
}

TEST(ChordName, WhatIsNoNameIsNoChord)
{
    for (const auto* name : {"", "C", "H7", "Cmaj7", "CM7", "Db7", "C#", "m7", "c7", "C 7"}) {
        EXPECT_FALSE(chordNamed(name).has_value()) << name;
    }
}

TEST(ChordName, TheLastNameOfASetIsTheOneThatIsFound)
{
    EXPECT_EQ(foundAgain("C6"), "Am7");
    EXPECT_EQ(foundAgain("Csus2"), "Gsus4");
    EXPECT_EQ(foundAgain("Fsus2"), "Csus4");
    EXPECT_EQ(foundAgain("C+"), "G#+");
    EXPECT_EQ(foundAgain("Co7"), "Ao7");
    EXPECT_EQ(foundAgain("Cm6"), "Cm6");
}

TEST(ChordName, TypesWithoutADoubleKeepTheirNameOnEveryRoot)
{
    for (const auto* type : {"8", "5", "M", "m", "o", "sus4", "-5", "m6", "7", "m7"}) {
        EXPECT_EQ(rootsThatKeepTheirName(type).size(), 12U) << type;
    }
}

TEST(ChordName, TypesWithDoublesKeepTheirNameOnTheHighestRootsOrNone)
{
    EXPECT_EQ(rootsThatKeepTheirName("+"), (std::vector<std::string>{"G#", "A", "A#", "B"}));
    EXPECT_EQ(rootsThatKeepTheirName("o7"), (std::vector<std::string>{"A", "A#", "B"}));
    EXPECT_TRUE(rootsThatKeepTheirName("6").empty());
    EXPECT_TRUE(rootsThatKeepTheirName("sus2").empty());
}

TEST(ChordName, ASetThatIsNoChordHasNoName)
{
    EXPECT_EQ(chordDetected(0), "");
    EXPECT_EQ(chordDetected(0b11), "");
    EXPECT_EQ(chordDetected(0b111111111111), "");
}

} // namespace
} // namespace volvelle::scores
