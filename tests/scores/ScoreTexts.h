#pragma once

#include "scores/ScoreParser.h"

#include <gtest/gtest.h>

#include <string>

// Short ways to write scores and to read them in tests.
namespace volvelle::test {

inline const std::string head = "title: T\nstyle: S\n";

// A rest of one bar.
inline const std::string rest = "| r:16 |\n";

// The score of a text that must be right.
inline Score parsed(const std::string& text, ScoreKind kind)
{
    const auto score = parseScore(text, kind);
    EXPECT_EQ(score.error(), "");
    return score ? *score : Score{};
}

// The error of a text that must be wrong.
inline std::string faultOf(const std::string& text, ScoreKind kind)
{
    const auto score = parseScore(text, kind);
    EXPECT_FALSE(score);
    return score.error();
}

} // namespace volvelle::test
