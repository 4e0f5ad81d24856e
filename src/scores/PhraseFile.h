#pragma once

#include "base/Result.h"
#include "scores/PhraseCompany.h"
#include "scores/Score.h"

#include <filesystem>
#include <memory>

namespace volvelle {

class MIDIPhrase;

// Compiled phrases, read back as an arrangement does. [any]

// Loads a file that is there as the track of its kind does: notes on the grid, chords found.
std::shared_ptr<MIDIPhrase> loadPhrase(const std::filesystem::path& file, ScoreKind kind);

// Loads a file likewise; null where it cannot be read or is no longer there.
std::shared_ptr<MIDIPhrase> readPhrase(const std::filesystem::path& file, ScoreKind kind);

// A loaded phrase as a score without a text, as far as it lies before beat 16; of a chord pattern the chords
// are those that were found, and the notes theirs.
Score scoreOf(const MIDIPhrase& phrase, ScoreKind kind);

// Reads a MIDI file of sixteen beats that was made elsewhere as a score: its notes on the grid, a sixteenth
// long at least. A file without a title gets its own name. Fails with a line where it is no MIDI file,
// damaged, longer, or without a note or a chord.
Result<Score> readMIDIPhrase(const std::filesystem::path& file, ScoreKind kind);

// The chord patterns and the drums below a folder of resources, as far as they are there without a gap. What
// cannot be read is passed over.
PhraseCompany companyIn(const std::filesystem::path& resources);

} // namespace volvelle
