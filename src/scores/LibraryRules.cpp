#include "scores/LibraryRules.h"

#include "base/Text.h"
#include "scores/FolderLint.h"
#include "scores/PhraseBounds.h"
#include "scores/PhraseLint.h"
#include "scores/ScoreLint.h"
#include "scores/ScoreText.h"

#include <utility>

namespace volvelle {

namespace fs = std::filesystem;

LibraryRules::LibraryRules(PhraseCompany elsewhere) : company(std::move(elsewhere)) {}

void LibraryRules::begin()
{
    if (const PlacedScores& patterns = read[ScoreKind::chordPattern]; !patterns.empty()) {
        company.harmonies.clear();
        for (const auto& [file, score] : patterns) {
            company.addPattern(score);
        }
    }
    if (const PlacedScores& drums = read[ScoreKind::drums]; !drums.empty()) {
        company.kicks.clear();
        for (const auto& [file, score] : drums) {
            company.addDrums(score);
        }
    }
}

void LibraryRules::hold(const PlacedScore& own, std::span<const PlacedScore> before)
{
    for (const auto& found : {lintScore(own.score), lintPhrase(own.score), lintMeasure(own.score, company)}) {
        for (const std::string& fault : found) {
            add(own.file, fault);
        }
    }
    holdTitle(own);
    if (own.score.kind == ScoreKind::chordPattern) {
        holdPattern(own, before);
    } else {
        holdDistance(own, before);
    }
}

void LibraryRules::holdFolder(const fs::path& folder, std::span<const PlacedScore> scores, ScoreKind kind)
{
    std::vector<Score> phrases;
    for (const auto& [file, score] : scores) {
        phrases.push_back(score);
    }
    for (const std::string& fault : lintFolder(phrases, kind)) {
        add(folder, fault);
    }
}

void LibraryRules::noteTitle(const PlacedScore& used)
{
    titles.emplace(used.score.title, used.file);
}

void LibraryRules::add(const fs::path& place, const std::string& fault)
{
    faults.push_back(concat(place.string(), ": ", fault));
}

void LibraryRules::holdTitle(const PlacedScore& own)
{
    const Score& score = own.score;
    if (score.title.empty()) {
        return;
    }
    const auto [first, isNew] = titles.emplace(score.title, own.file);
    if (!isNew) {
        add(own.file, concat(score.titleLine > 0 ? scores::atLine(score.titleLine) : "", "the title ",
                             scores::quoted(score.title), " stands in ", first->second.string(),
                             ", too: each is used once"));
    }
}

void LibraryRules::holdPattern(const PlacedScore& own, std::span<const PlacedScore> before)
{
    for (const PlacedScore& other : before) {
        if (areOnePattern(own.score, other.score)) {
            add(own.file, concat("its chords stand in ", other.file.string(),
                                 " at the same times, up to a transposition"));
            return;
        }
    }
}

void LibraryRules::holdDistance(const PlacedScore& own, std::span<const PlacedScore> before)
{
    const auto places = placesOf(own.score);
    const auto nearestBy = [&](auto distance, double least, std::string_view how) {
        const double bound = least;
        const PlacedScore* nearest = nullptr;
        for (const PlacedScore& other : before) {
            if (const double found = distance(places, placesOf(other.score)); found < least) {
                least = found;
                nearest = &other;
            }
        }
        if (nearest != nullptr) {
            const bool isDrums = own.score.kind == ScoreKind::drums;
            add(own.file, concat(isDrums ? "the places of kicks and snares" : "the places where it is struck",
                                 " differ from those of ", nearest->file.string(), how, " in ",
                                 percentText(least), ", at least ", percentText(bound)));
        }
        return nearest != nullptr;
    };
    if (!nearestBy(distanceOf, leastDistance, "")) {
        nearestBy(distanceInAnyOrder, leastDistanceOfBars, " with its bars in another order");
    }
}

} // namespace volvelle
