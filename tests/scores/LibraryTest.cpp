#include "scores/ChordName.h"
#include "scores/ScoreLint.h"
#include "scores/ScoreParser.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <bit>
#include <filesystem>
#include <fstream>
#include <map>
#include <set>
#include <sstream>

// The rules that the phrases of the library keep, one by one and as a whole.
namespace volvelle {
namespace {

namespace fs = std::filesystem;

const fs::path library = fs::path(VOLVELLE_SOURCE_DIR) / "library";

std::vector<fs::path> scoresOf(ScoreKind kind)
{
    std::vector<fs::path> paths;
    for (const auto& entry : fs::directory_iterator(library / scoreFolder(kind))) {
        paths.push_back(entry.path());
    }
    std::ranges::sort(paths);
    return paths;
}

Score readScore(const fs::path& path, ScoreKind kind)
{
    std::stringstream words;
    words << std::ifstream(path, std::ios::binary).rdbuf();
    std::string error;
    auto score = parseScore(words.str(), kind, error);
    EXPECT_EQ(error, "") << path;
    return score.value_or(Score{});
}

std::vector<Score> allOf(ScoreKind kind)
{
    std::vector<Score> scores;
    for (const auto& path : scoresOf(kind)) {
        scores.push_back(readScore(path, kind));
    }
    return scores;
}

// The places within a bar (1 to 4) where something is struck, with what is struck there.
std::map<double, std::set<int>> onsets(const Score& score, int bar)
{
    std::map<double, std::set<int>> places;
    for (const auto& note : score.notes) {
        if (static_cast<int>(note.position / 4) + 1 == bar) {
            places[note.position - (bar - 1) * 4.0].insert(note.number);
        }
    }
    return places;
}

bool hasNearlyEmptyBar(const Score& score)
{
    const std::size_t few = score.kind == ScoreKind::drums ? 5 : 2;
    for (int bar = 1; bar <= Score::bars; ++bar) {
        if (onsets(score, bar).size() <= few) {
            return true;
        }
    }
    return false;
}

bool soundsOnEveryFirstBeat(const Score& score)
{
    for (int bar = 0; bar < Score::bars; ++bar) {
        if (std::ranges::none_of(score.notes, [&](const ScoreNote& note) {
                return note.position <= bar * 4.0 && note.position + note.duration > bar * 4.0;
            })) {
            return false;
        }
    }
    return true;
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

TEST(Library, EveryFolderHasEnoughScoresNumberedWithoutAGap)
{
    for (const auto kind : allScoreKinds) {
        const auto paths = scoresOf(kind);
        EXPECT_GE(paths.size(), 16U) << scoreFolder(kind);
        for (std::size_t i = 0; i < paths.size(); ++i) {
            const auto name = paths[i].filename().string();
            EXPECT_EQ(name.substr(3, 1), "-") << name;
            EXPECT_EQ(std::stoul(name.substr(0, 3)), i + 1) << name;
            EXPECT_EQ(paths[i].extension(), ".score") << name;
        }
    }
}

TEST(Library, EveryScoreIsReadAndKeepsTheRules)
{
    for (const auto kind : allScoreKinds) {
        for (const auto& path : scoresOf(kind)) {
            EXPECT_EQ(lintScore(readScore(path, kind)), std::vector<std::string>{}) << path.filename();
        }
    }
}

TEST(Library, EveryTitleIsItsOwn)
{
    std::set<std::string> titles;
    for (const auto kind : allScoreKinds) {
        for (const auto& score : allOf(kind)) {
            EXPECT_TRUE(titles.insert(score.title).second) << score.title;
        }
    }
}

TEST(Library, EveryChordPatternIsFoundAgainChordByChord)
{
    for (const auto& score : allOf(ScoreKind::chordPattern)) {
        EXPECT_TRUE(detected(score) == score.chords) << score.title;
    }
}

TEST(Library, EveryThirdPhraseLeavesABarNearlyEmpty)
{
    for (const auto kind : {ScoreKind::chords, ScoreKind::lead, ScoreKind::bass, ScoreKind::drums}) {
        const auto scores = allOf(kind);
        EXPECT_GE(3 * std::ranges::count_if(scores, hasNearlyEmptyBar), std::ssize(scores))
            << scoreFolder(kind);
    }
}

TEST(Library, TwoOfThreeBassesSoundOnTheFirstBeatOfEveryBar)
{
    const auto basses = allOf(ScoreKind::bass);
    EXPECT_GE(3 * std::ranges::count_if(basses, soundsOnEveryFirstBeat), 2 * std::ssize(basses));
}

TEST(Library, EveryLeadHasOneHighestPoint)
{
    for (const auto& score : allOf(ScoreKind::lead)) {
        const auto highest = std::ranges::max(score.notes, {}, &ScoreNote::number).number;
        EXPECT_EQ(std::ranges::count(score.notes, highest, &ScoreNote::number), 1) << score.title;
    }
}

TEST(Library, EveryDrumPhraseTurnsInItsFourthBar)
{
    for (const auto& score : allOf(ScoreKind::drums)) {
        for (int bar = 1; bar < Score::bars; ++bar) {
            EXPECT_NE(onsets(score, bar), onsets(score, Score::bars)) << score.title;
        }
    }
}

TEST(Library, SmallStepsAreRareWhereALineIsToBeHeard)
{
    for (const auto kind : {ScoreKind::lead, ScoreKind::bass}) {
        for (const auto& score : allOf(kind)) {
            int small = 0;
            for (std::size_t i = 1; i < score.notes.size(); ++i) {
                const int step = std::abs(score.notes[i].number - score.notes[i - 1].number);
                small += step == 1 || step == 2 ? 1 : 0;
            }
            EXPECT_LE(small, 2) << score.title;
        }
    }
}

} // namespace
} // namespace volvelle
