#include "scores/ScoreKind.h"

#include "base/Text.h"

#include <algorithm>

namespace volvelle {

namespace {

struct KindRow {
    std::string_view scores;
    std::string_view phrases;
    std::string_view body;
    int channel;
};

constexpr std::array<KindRow, 5> rows = {{
    {"chord-patterns", "Phrases/chord patterns", "chords", 0},
    {"chords", "Phrases2/01 chords", "notes", 1},
    {"leads", "Phrases2/02 leads", "notes", 2},
    {"basses", "Phrases2/09 basses", "notes", 8},
    {"drums", "Phrases2/10 drums", "drums", 9},
}};

const KindRow& row(ScoreKind kind)
{
    return rows[static_cast<std::size_t>(kind)];
}

} // namespace

std::string_view scoreFolder(ScoreKind kind)
{
    return row(kind).scores;
}

std::string scoreFolders()
{
    std::string names;
    for (const ScoreKind kind : allScoreKinds) {
        names += concat(names.empty() ? "" : ", ", scoreFolder(kind));
    }
    return names;
}

std::optional<ScoreKind> scoreKindOf(std::string_view folder)
{
    const auto kind = std::ranges::find(allScoreKinds, folder, scoreFolder);
    return kind == allScoreKinds.end() ? std::nullopt : std::optional(*kind);
}

std::string_view phraseFolder(ScoreKind kind)
{
    return row(kind).phrases;
}

std::string_view scoreBodyWord(ScoreKind kind)
{
    return row(kind).body;
}

int scoreChannel(ScoreKind kind)
{
    return row(kind).channel;
}

} // namespace volvelle
