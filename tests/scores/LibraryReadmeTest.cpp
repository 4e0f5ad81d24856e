#include "base/Text.h"
#include "scores/ChordName.h"
#include "scores/PhraseBounds.h"
#include "scores/PhraseLint.h"
#include "scores/ScoreLint.h"
#include "tests/scores/ScoreTexts.h"
#include "tests/support/ProjectFolders.h"

#include <algorithm>
#include <cmath>
#include <fstream>
#include <iterator>

// What library/README.md shows is what the compiler and the rules take.
namespace volvelle {
namespace {

std::string readme()
{
    std::ifstream stream(test::sourceFolder() / "library/README.md", std::ios::binary);
    return {std::istreambuf_iterator<char>(stream), {}};
}

// What stands between the lines of three back quotes.
std::vector<std::string> examples()
{
    const std::string words = readme();
    const std::string fence = "```\n";
    std::vector<std::string> found;
    for (auto from = words.find(fence); from != std::string::npos;) {
        from += fence.size();
        const auto to = words.find(fence, from);
        found.push_back(words.substr(from, to - from));
        from = words.find(fence, to + fence.size());
    }
    return found;
}

TEST(LibraryReadme, ItsExamplesKeepTheRules)
{
    const auto shown = examples();
    constexpr ScoreKind kinds[] = {ScoreKind::chordPattern, ScoreKind::chords, ScoreKind::lead,
                                   ScoreKind::drums};
    ASSERT_EQ(shown.size(), std::size(kinds) + 1);
    for (std::size_t i = 0; i < std::size(kinds); ++i) {
        const Score score = test::parsed(shown[0] + shown[i + 1], kinds[i]);
        EXPECT_EQ(lintScore(score), std::vector<std::string>{}) << shown[i + 1];
        EXPECT_EQ(lintPhrase(score), std::vector<std::string>{}) << shown[i + 1];
    }
}

TEST(LibraryReadme, ItNamesTheChordsThatAreFoundAgain)
{
    EXPECT_NE(readme().find("`" + scores::chordTypes() + "`"), std::string::npos) << scores::chordTypes();
}

TEST(LibraryReadme, ItTellsTheBoundsOfAFolder)
{
    const auto percent = [](double share) { return concat(std::lround(share * 100), " %"); };
    std::string words = readme();
    std::ranges::replace(words, '\n', ' ');
    for (const std::string& bound :
         {"struck differ in " + percent(leastDistance) + " at least",
          "with the bars of one in any order, in " + percent(leastDistanceOfBars) + " at least",
          concat("Of ", fewBasses, " basses and more ", percent(mostThirds), " of the bars at most"),
          concat("Of ", fewForShares, " phrases and more ", percent(mostOfStyle), " at most have one style"),
          percent(mostOfRhythm) + " at most of the bars are struck at the same places"}) {
        EXPECT_NE(words.find(bound), std::string::npos) << bound;
    }
}

} // namespace
} // namespace volvelle
