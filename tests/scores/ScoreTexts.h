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
    std::string error;
    const auto score = parseScore(text, kind, error);
    EXPECT_EQ(error, "");
    EXPECT_TRUE(score.has_value());
    return score.value_or(Score{});
}

// The error of a text that must be wrong.
inline std::string faultOf(const std::string& text, ScoreKind kind)
{
    std::string error;
    EXPECT_FALSE(parseScore(text, kind, error).has_value());
    return error;
}

} // namespace volvelle::test
