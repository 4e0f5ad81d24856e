#include "scores/PhraseCompany.h"

#include "tests/scores/ScoreTexts.h"

namespace volvelle {
namespace {

using test::head;
using test::parsed;
using Lines = std::vector<std::string>;

Score pattern(const std::string& bars)
{
    return parsed(head + "chords:\n" + bars, ScoreKind::chordPattern);
}

Score phrase(ScoreKind kind, const std::string& bars, const std::string& flags = "")
{
    return parsed(head + flags + "notes:\n" + bars, kind);
}

PhraseCompany company()
{
    PhraseCompany company;
    company.addPattern(pattern("| CM | FM | GM | CM |"));
    company.addDrums(
        parsed(head + "drums:\nlow 36 |8.......8.......|8.......8.......|8...............|8...............|\n"
                      "hat 42 |9999999999999999|9999999999999999|9999999999999999|9999999999999999|\n",
               ScoreKind::drums));
    return company;
}

TEST(PhraseCompany, NotesAreHeardOnTheGrid)
{
    const auto notes =
        heardNotes(phrase(ScoreKind::lead, "| r:1 C4:3 C4:1' r:11 | E4:16 | ~:2 r:14 | r:16 |\n"));
    EXPECT_EQ(notes, (HeardNotes{{1, 3, 72, 76}, {4, 1, 72, 76}, {16, 18, 76, 76}}));
}

TEST(PhraseCompany, ChordsAreHeardUnderTheRootThatIsFoundWhereTheyAreMovedTo)
{
    const Score chords = pattern("| CM . . G#+ | . | Am7 | . |");
    EXPECT_EQ(heardChords(chords, 0),
              (std::vector<HeardChord>{{0, 0x091, 0}, {12, 0x111, 8}, {32, 0x291, 9}}));
    EXPECT_EQ(heardChords(chords, -6),
              (std::vector<HeardChord>{{0, 0x442, 6}, {12, 0x444, 10}, {32, 0x44A, 3}}));
    EXPECT_EQ(company().harmonies.size(), 13U);
}

TEST(PhraseCompany, AToneThatIsHeldOverChangesIsTold)
{
    const auto faults = lintMeasure(phrase(ScoreKind::chords, "| C3:16 | ~:16 | ~:16 | ~:16 |\n"), company());
    ASSERT_EQ(faults.size(), 1U);
    EXPECT_EQ(faults[0].substr(0, 39), "a tone sounds outside the chord for 32.");
    EXPECT_TRUE(faults[0].ends_with(" %, at most 8 %")) << faults[0];
    EXPECT_EQ(lintMeasure(phrase(ScoreKind::chords, "| C3:15 r:1 | C3:15 r:1 | C3:15 r:1 | C3:15 r:1 |\n"),
                          company()),
              Lines{});
}

TEST(PhraseCompany, ABassMeetsChangesRootsAndKicks)
{
    const std::string good =
        "| C1:4 G0:4 C1:4 G0:4 | C1:4 G0:4 C1:4 G0:4 | C1:4 G0:4 C1:4 G0:4 | C1:4 G0:4 C1:4 G0:4 |\n";
    EXPECT_EQ(lintMeasure(phrase(ScoreKind::bass, good), company()), Lines{});
    const std::string late = "| r:2 C1:1 r:13 | r:2 C1:1 r:13 | r:2 C1:1 r:13 | r:2 C1:1 r:13 |\n";
    EXPECT_EQ(lintMeasure(phrase(ScoreKind::bass, late), company()),
              (Lines{"of the chord changes the bass meets 0 %, at least 50 %",
                     "of the chords the bass sounds the root in 40.4 %, at least 50 %",
                     "of the notes a kick lies under 0 %, at least 25 %"}));
    EXPECT_EQ(lintMeasure(phrase(ScoreKind::bass, late, "colour: yes\n"), company()), Lines{});
}

TEST(PhraseCompany, ALeadThatIsHeardOnOneKeyIsTold)
{
    const std::string stuck =
        "| C4:4 C4:4 C4:4 r:4 | C4:4 C4:4 C4:4 r:4 | C4:4 C4:4 C4:4 r:4 | C4:4 C4:4 C4:4 r:4 |\n";
    const auto faults = lintMeasure(phrase(ScoreKind::lead, stuck), company());
    ASSERT_EQ(faults.size(), 1U);
    EXPECT_TRUE(faults[0].starts_with("of the steps that are heard, the key is repeated in ")) << faults[0];
}

// What is told of a phrase over these chords, which are not moved, and these kicks.
Lines faultsOver(std::vector<HeardChord> chords, Onsets kicks, const Score& score)
{
    PhraseCompany company;
    company.harmonies.emplace_back(std::move(chords));
    company.kicks.push_back(kicks);
    return lintMeasure(score, company);
}

TEST(PhraseCompany, WhatLiesOnABoundIsInOrder)
{
    const HeardChord c{0, 0x091, 0};
    const HeardChord f{16, 0x221, 5};
    const HeardChord g{32, 0x884, 7};
    const Onsets all = ~Onsets{0};
    const Score twoOfThree = phrase(ScoreKind::bass, "| C1:4 r:12 | F1:4 r:12 | r:16 | r:16 |\n");
    EXPECT_EQ(faultsOver({c, f, g}, all, twoOfThree), Lines{});
    const Score oneOfTwo = phrase(ScoreKind::bass, "| C1:4 r:12 | A0:4 r:12 | r:16 | r:16 |\n");
    EXPECT_EQ(faultsOver({c, f}, all, oneOfTwo), Lines{});
    EXPECT_EQ(faultsOver({c, f, g}, all, oneOfTwo),
              Lines{"of the chords the bass sounds the root in 33.3 %, at least 50 %"});
    const Score fourNotes = phrase(ScoreKind::bass, "| C1:4 C1:4 C1:4 C1:4 | r:16 | r:16 | r:16 |\n");
    EXPECT_EQ(faultsOver({c}, Onsets{1}, fourNotes), Lines{});
    EXPECT_EQ(faultsOver({c}, Onsets{2}, fourNotes),
              Lines{"of the notes a kick lies under 0 %, at least 25 %"});
    const Score threeOfTen = phrase(ScoreKind::lead, "| C4:2 C4:2 E4:2 E4:2 G4:2 G4:2 C4:2 E4:2 |"
                                                     " G4:2 C4:2 E4:2 r:10 | r:16 | r:16 |\n");
    EXPECT_EQ(faultsOver({c}, all, threeOfTen), Lines{});
    const Score fourOfTen = phrase(ScoreKind::lead, "| C4:2 C4:2 E4:2 E4:2 G4:2 G4:2 C4:2 C4:2 |"
                                                    " G4:2 C4:2 E4:2 r:10 | r:16 | r:16 |\n");
    EXPECT_EQ(faultsOver({c}, all, fourOfTen),
              Lines{"of the steps that are heard, the key is repeated in 40 %, at most 30 %"});
}

TEST(PhraseCompany, WithoutCompanyNothingIsTold)
{
    EXPECT_EQ(lintMeasure(phrase(ScoreKind::bass, "| C1:16 | ~:16 | ~:16 | ~:16 |\n"), {}), Lines{});
    EXPECT_EQ(lintMeasure(pattern("| CM | FM | GM | CM |"), company()), Lines{});
}

TEST(PhraseCompany, PatternsAreOneUpToATransposition)
{
    EXPECT_TRUE(areOnePattern(pattern("| CM | FM | G7 | CM |"), pattern("| DM | GM | A7 | DM |")));
    EXPECT_FALSE(areOnePattern(pattern("| CM | FM | G7 | CM |"), pattern("| DM | GM | AM | DM |")));
    EXPECT_FALSE(areOnePattern(pattern("| CM | FM | G7 | CM |"), pattern("| DM | GM . . A7 | . | DM |")));
}

} // namespace
} // namespace volvelle
