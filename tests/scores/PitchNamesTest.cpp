#include "scores/PitchNames.h"

#include <gtest/gtest.h>

namespace volvelle::scores {
namespace {

TEST(PitchNames, MiddleCIsC3)
{
    EXPECT_EQ(pitchNumber("C3"), 60);
    EXPECT_EQ(pitchName(60), "C3");
}

TEST(PitchNames, TheEdgesAreCMinus2AndG8)
{
    EXPECT_EQ(pitchNumber("C-2"), 0);
    EXPECT_EQ(pitchNumber("G8"), 127);
    EXPECT_EQ(pitchNumber("G#8"), std::nullopt);
    EXPECT_EQ(pitchNumber("C-3"), std::nullopt);
}

TEST(PitchNames, EveryKeyIsReadBackFromItsName)
{
    for (int number = 0; number < 128; ++number) {
        EXPECT_EQ(pitchNumber(pitchName(number)), number);
    }
}

TEST(PitchNames, WhatIsNoNameIsNoPitch)
{
    for (const auto* name : {"", "C", "3", "H3", "Bb3", "E#3", "c3", "C3x", "C 3", "C--1"}) {
        EXPECT_EQ(pitchNumber(name), std::nullopt) << name;
    }
}

} // namespace
} // namespace volvelle::scores
