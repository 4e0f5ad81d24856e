#include "scores/ScoreWriter.h"

#include "tests/scores/ScoreTexts.h"

#include <gtest/gtest.h>

#include <algorithm>

namespace volvelle {
namespace {

using test::head;
using test::parsed;
using test::rest;
using Bytes = std::vector<std::uint8_t>;

Bytes written(const Score& score)
{
    const auto bytes = scoreToMIDI(score);
    EXPECT_EQ(bytes.error(), "");
    return bytes ? *bytes : Bytes{};
}

std::string asText(const Bytes& bytes)
{
    return {bytes.begin(), bytes.end()};
}

TEST(ScoreWriter, ALeadIsOneTrackWithTitleStyleAndNotesUpToBeat16)
{
    const auto score =
        parsed(head + "notes:\n| C3:1 r:3 E3:4=100 r:8 |\n" + rest + rest + rest, ScoreKind::lead);
    // clang-format off
    const Bytes expected = {
        'M', 'T', 'h', 'd', 0, 0, 0, 6, 0, 0, 0, 1, 0x01, 0xE0, // one track, 480 ticks
        'M', 'T', 'r', 'k', 0, 0, 0, 37,
        0x00, 0xFF, 0x03, 1, 'T',
        0x00, 0xFF, 0x01, 8, 's', 't', 'y', 'l', 'e', ':', ' ', 'S',
        0x00, 0x92, 0x3C, 0x4C,
        0x69, 0x3C, 0x00,              // off after 105 ticks
        0x82, 0x77, 0x40, 0x64,        // to tick 480
        0x83, 0x51, 0x40, 0x00,        // off after 465 ticks
        0xB4, 0x4F, 0xFF, 0x2F, 0x00}; // to tick 7680
    // clang-format on
    EXPECT_EQ(written(score), expected);
}

TEST(ScoreWriter, EachKindHasItsChannel)
{
    Score score;
    score.title = score.style = "x";
    score.notes = {{0, 0.5, 60, 64}};
    const auto status = [&score](ScoreKind kind) {
        score.kind = kind;
        const auto bytes = written(score);
        const Bytes note = {60, 64};
        const auto found = std::search(bytes.begin(), bytes.end(), note.begin(), note.end());
        return found == bytes.begin() || found == bytes.end() ? 0 : int{*std::prev(found)};
    };
    EXPECT_EQ(status(ScoreKind::chordPattern), 0x90);
    EXPECT_EQ(status(ScoreKind::chords), 0x91);
    EXPECT_EQ(status(ScoreKind::lead), 0x92);
    EXPECT_EQ(status(ScoreKind::bass), 0x98);
    EXPECT_EQ(status(ScoreKind::drums), 0x99);
}

TEST(ScoreWriter, AChordPatternTellsItsChordsWhereTheyBegin)
{
    const auto bytes = asText(
        written(parsed(head + "chords:\n| Am7 | . | . . . . . . . FM | . |\n", ScoreKind::chordPattern)));
    const auto first = bytes.find("chord: Am7");
    const auto second = bytes.find("chord: FM");
    ASSERT_NE(first, std::string::npos);
    ASSERT_NE(second, std::string::npos);
    EXPECT_EQ(bytes.substr(first - 4, 4), std::string("\x00\xFF\x01\x0A", 4));
    EXPECT_EQ(bytes.substr(second - 4, 4), std::string("\x0F\xFF\x01\x09", 4)); // 15 ticks past the last note
}

TEST(ScoreWriter, TheSameScoreGivesTheSameBytes)
{
    const auto score = parsed(head + "chords:\n| Am7 | E7 | Am7 | FM |\n", ScoreKind::chordPattern);
    EXPECT_EQ(written(score), written(score));
}

TEST(ScoreWriter, ItsFilesAreKnownAgainByTheirStart)
{
    auto bytes = written(parsed(head + "chords:\n| Am7 | E7 | Am7 | FM |\n", ScoreKind::chordPattern));
    EXPECT_TRUE(isCompiledPhrase(bytes));
    EXPECT_FALSE(isCompiledPhrase({}));
    EXPECT_FALSE(isCompiledPhrase({bytes.data(), 20}));
    for (const std::size_t place : {0U, 9U, 11U, 13U, 17U, 23U, 24U, 31U}) {
        bytes[place] ^= 1U;
        EXPECT_FALSE(isCompiledPhrase(bytes)) << place;
        bytes[place] ^= 1U;
    }
}

TEST(ScoreWriter, ANoteThatMIDICannotHoldIsAnErrorAndNoFile)
{
    Score score;
    score.notes = {{0, 1, 200, 64}};
    EXPECT_EQ(scoreToMIDI(score).error(), "the phrase cannot be written as MIDI: status -10853");
}

} // namespace
} // namespace volvelle
