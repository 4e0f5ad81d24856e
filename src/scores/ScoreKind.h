#pragma once

#include <array>
#include <optional>
#include <string>
#include <string_view>

namespace volvelle {

// The five folders of the phrase library; a score's kind decides its notation, its channel and its rules.
enum class ScoreKind { chordPattern, chords, lead, bass, drums };

inline constexpr std::array<ScoreKind, 5> allScoreKinds = {
    ScoreKind::chordPattern, ScoreKind::chords, ScoreKind::lead, ScoreKind::bass, ScoreKind::drums};

// The folder of the scores: "chord-patterns", "chords", "leads", "basses" or "drums".
std::string_view scoreFolder(ScoreKind kind);

// All of them, as "chord-patterns, chords, leads, basses, drums".
std::string scoreFolders();

// The kind of the scores of that folder, or nothing.
std::optional<ScoreKind> scoreKindOf(std::string_view folder);

// The folder of the compiled phrases below the resources, as "Phrases2/02 leads".
std::string_view phraseFolder(ScoreKind kind);

// The word that opens the body: "chords", "drums", or "notes" for the three others.
std::string_view scoreBodyWord(ScoreKind kind);

// The MIDI channel of the compiled notes, counted from 0.
int scoreChannel(ScoreKind kind);

} // namespace volvelle
