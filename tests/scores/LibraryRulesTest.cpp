#include "scores/LibraryRules.h"

#include "tests/scores/ScoreTexts.h"

#include <algorithm>

namespace volvelle {
namespace {

using test::head;
using test::parsed;

Score pattern(const std::string& bars)
{
    return parsed(head + "chords:\n" + bars, ScoreKind::chordPattern);
}

Score drums(const std::string& kicks)
{
    return parsed(head + "drums:\nlow 36 " + kicks, ScoreKind::drums);
}

// How many faults begin so after the name of the file.
auto count(const LibraryRules& rules, const std::string& what)
{
    return std::ranges::count_if(rules.faults,
                                 [&](const std::string& fault) { return fault.starts_with("b: " + what); });
}

TEST(LibraryRules, PatternsAndDrumsOfItsOwnStandForThoseFromElsewhere)
{
    const std::string everyBar = "|8888888888888888|8888888888888888|8888888888888888|8888888888888888|\n";
    PhraseCompany elsewhere;
    elsewhere.addPattern(pattern("| CM F#M CM F#M | CM F#M CM F#M | CM F#M CM F#M | CM F#M CM F#M |\n"));
    elsewhere.addDrums(drums(everyBar));
    const PlacedScore bass{"b",
                           parsed(head + "notes:\n| C1:16 | G0:16 | C1:16 | G0:16 |\n", ScoreKind::bass)};

    LibraryRules without(elsewhere);
    without.begin();
    without.hold(bass, {});
    EXPECT_EQ(count(without, "a tone sounds outside the chord"), 1);
    EXPECT_EQ(count(without, "of the notes a kick lies under"), 0);

    LibraryRules with(elsewhere);
    with.read[ScoreKind::chordPattern] = {{"p", pattern("| CM | . | . | . |\n")}};
    with.read[ScoreKind::drums] = {
        {"d", drums("|.8..............|................|................|................|\n")}};
    with.begin();
    with.hold(bass, {});
    EXPECT_EQ(count(with, "a tone sounds outside the chord"), 0);
    EXPECT_EQ(count(with, "of the notes a kick lies under"), 1);
}

} // namespace
} // namespace volvelle
