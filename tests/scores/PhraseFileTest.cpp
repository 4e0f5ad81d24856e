#include "scores/PhraseFile.h"

#include "phrases/MIDIPhrases.h"
#include "scores/ScoreWriter.h"
#include "tests/scores/ScoreTexts.h"
#include "tests/support/TemporaryFolder.h"

#include <fstream>

namespace volvelle {
namespace {

namespace fs = std::filesystem;
using test::head;
using test::parsed;

class PhraseFile : public testing::Test {
protected:
    void put(const Score& score, const std::string& name) const
    {
        const fs::path place = folder / phraseFolder(score.kind) / name;
        const auto bytes = scoreToMIDI(score);
        ASSERT_TRUE(bytes);
        fs::create_directories(place.parent_path());
        std::ofstream(place, std::ios::binary)
            .write(reinterpret_cast<const char*>(bytes->data()), std::ssize(*bytes));
    }

    Score readBack(const Score& score) const
    {
        put(score, "001.mid");
        return scoreOf(*loadPhrase(folder / phraseFolder(score.kind) / "001.mid", score.kind), score.kind);
    }

    test::TemporaryFolder temporary;
    fs::path folder = temporary.path;
};

TEST_F(PhraseFile, AScoreIsReadBackFromItsPhrase)
{
    const Score lead = parsed(
        head +
            "machine: yes\ncolour: yes\nnotes:\n| ff C4:3 r:1 [E4 G4]:4 r:8 | C4:16=90 | ~:4 r:12 | r:16 |\n",
        ScoreKind::lead);
    const Score back = readBack(lead);
    EXPECT_EQ(back.title, "T");
    EXPECT_TRUE(back.machine && back.colour);
    EXPECT_EQ(back.notes, lead.notes);
    EXPECT_EQ(back.kind, ScoreKind::lead);
    EXPECT_FALSE(readBack(parsed(head + "notes:\n| C4:16 | r:16 | r:16 | r:16 |\n", ScoreKind::lead)).colour);
}

TEST_F(PhraseFile, TheChordsOfAPatternAreThoseThatAreFound)
{
    const Score pattern =
        parsed(head + "chords:\n| Am . . G#+ | Bo7 | FM - | E7 |\n", ScoreKind::chordPattern);
    EXPECT_EQ(readBack(pattern).chords, pattern.chords);
}

TEST_F(PhraseFile, ThePatternsAndDrumsOfALibraryAreTheCompanyOfAPhrase)
{
    put(parsed(head + "chords:\n| Am | FM | GM | . |\n", ScoreKind::chordPattern), "001.mid");
    put(parsed(head + "chords:\n| Em | FM | GM | . |\n", ScoreKind::chordPattern), "002.mid");
    put(parsed(head + "chords:\n| Em | DM | GM | . |\n", ScoreKind::chordPattern), "004.mid");
    const std::string silence = "................|";
    put(parsed(head + "drums:\nlow 36 |8...8...........|" + silence + silence + silence + "\n",
               ScoreKind::drums),
        "001.mid");
    const PhraseCompany company = companyIn(folder);
    EXPECT_EQ(company.harmonies.size(), 26U);
    EXPECT_EQ(company.kicks, std::vector<Onsets>{0x11});
    EXPECT_TRUE(companyIn(folder / "gone").harmonies.empty());
}

} // namespace
} // namespace volvelle
