#include "scores/ChordName.h"
#include "scores/LibraryLint.h"
#include "scores/ScoreFile.h"
#include "tests/support/ProjectFolders.h"

#include <gtest/gtest.h>

#include <bit>
#include <filesystem>
#include <map>

// The phrases of the library.
namespace volvelle {
namespace {

namespace fs = std::filesystem;

const fs::path library = test::sourceFolder() / "library";

std::vector<fs::path> scoresOf(ScoreKind kind)
{
    const auto scores = scoresIn(library / scoreFolder(kind));
    return scores ? *scores : std::vector<fs::path>{};
}

// The chords as they are found when the phrase is loaded: at every note-on the whole set that sounds is
// tried, and of the chords at one place the one with the most tones stays.
std::vector<ScoreChord> detected(const Score& score)
{
    struct Found {
        std::string name;
        int tones = 0;
    };

    std::map<double, Found> chords;
    for (std::size_t i = 0; i < score.notes.size(); ++i) {
        const double now = score.notes[i].position;
        unsigned tones = 0;
        for (std::size_t j = 0; j <= i; ++j) {
            if (score.notes[j].position + score.notes[j].duration > now) {
                tones |= 1U << (score.notes[j].number % 12);
            }
        }
        const auto name = scores::chordDetected(tones);
        auto& place = chords[now];
        if (!name.empty() && std::popcount(tones) > place.tones) {
            place = {name, std::popcount(tones)};
        }
    }
    std::vector<ScoreChord> list;
    for (const auto& [position, found] : chords) {
        if (list.empty() || list.back().name != found.name) {
            list.push_back({position, found.name});
        }
    }
    return list;
}

TEST(Library, EveryFolderHasEnoughScores)
{
    for (const auto kind : allScoreKinds) {
        EXPECT_GE(scoresOf(kind).size(), 110U) << scoreFolder(kind);
    }
}

TEST(Library, ItKeepsItsRules)
{
    const auto report = lintLibrary(library);
    EXPECT_EQ(report.faults, std::vector<std::string>{});
    EXPECT_GE(report.scores, 600);
}

TEST(Library, EveryChordPatternIsFoundAgainChordByChord)
{
    for (const auto& path : scoresOf(ScoreKind::chordPattern)) {
        const Score score = *readScore(path, ScoreKind::chordPattern);
        EXPECT_TRUE(detected(score) == score.chords) << score.title;
    }
}

} // namespace
} // namespace volvelle
