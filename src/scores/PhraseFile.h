#pragma once

#include "scores/PhraseCompany.h"
#include "scores/Score.h"

#include <filesystem>
#include <memory>

namespace volvelle {

class MIDIPhrase;

// Compiled phrases, read back as an arrangement does. [any]

// Loads a file that is there as the track of its kind does: notes on the grid, chords found.
std::shared_ptr<MIDIPhrase> loadPhrase(const std::filesystem::path& file, ScoreKind kind);

// A loaded phrase as a score without a text; of a chord pattern the chords are those that were found.
Score scoreOf(const MIDIPhrase& phrase, ScoreKind kind);

// The chord patterns and the drums below a folder of resources, as far as they are there without a gap.
PhraseCompany companyIn(const std::filesystem::path& resources);

} // namespace volvelle
