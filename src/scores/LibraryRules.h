#pragma once

#include "scores/PhraseCompany.h"
#include "scores/PlacedScore.h"

#include <filesystem>
#include <map>
#include <span>
#include <string>
#include <vector>

namespace volvelle {

// The rules for the phrases of a library, whether they were read from scores or from compiled phrases: those
// of each one, see lintScore(), lintPhrase() and lintMeasure(), titles that stand once, phrases that are
// struck alike, and what each folder wants of its phrases together, see lintFolder(). Put the phrases in,
// begin(), and hold them. [any]
class LibraryRules {
public:
    // Where there are no chord patterns, and where there are no drums, phrases are measured against those of
    // `elsewhere`.
    explicit LibraryRules(PhraseCompany elsewhere = {});

    std::map<ScoreKind, PlacedScores> read;
    std::vector<std::string> faults; // plain lines, as "library/leads/004-kite.score: line 7, bar 2: ..."

    // Has chord patterns and drums that were read stand for those from elsewhere.
    void begin();

    // Holds one phrase, against those of its kind that stand before it. A phrase without a title has none
    // that could stand twice.
    void hold(const PlacedScore& own, std::span<const PlacedScore> before);

    // Holds what a folder wants of its phrases together.
    void holdFolder(const std::filesystem::path& folder, std::span<const PlacedScore> scores, ScoreKind kind);

    // Counts a title as used.
    void noteTitle(const PlacedScore& used);

    void add(const std::filesystem::path& place, const std::string& fault);

private:
    void holdTitle(const PlacedScore& own);
    void holdPattern(const PlacedScore& own, std::span<const PlacedScore> before);
    void holdDistance(const PlacedScore& own, std::span<const PlacedScore> before);

    PhraseCompany company;
    std::map<std::string, std::filesystem::path> titles; // with the first file that has each
};

} // namespace volvelle
