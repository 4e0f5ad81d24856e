#include "scores/ScoreKind.h"

#include "base/Checked.h"
#include "base/Text.h"
#include "phrases/ArrangementTracks.h"

#include <algorithm>

namespace volvelle {

namespace {

struct KindRow {
    std::string_view scores;
    std::string_view body;
    int channel;
};

constexpr std::array<KindRow, 5> rows = {{
    {"chord-patterns", "chords", chordChannel},
    {"chords", "notes", chordPhraseChannel},
    {"leads", "notes", leadChannel},
    {"basses", "notes", bassChannel},
    {"drums", "drums", drumChannel},
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
    return required(arrangementTrackOf(scoreChannel(kind))).folder;
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
