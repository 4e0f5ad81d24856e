#pragma once

#include "hearing/PhraseHearing.h"
#include "scores/Score.h"

#include <string>
#include <vector>

// What a phrase is measured against: any phrase of the other folders may meet it. [any]
namespace volvelle {

struct PhraseCompany {
    std::vector<Harmony> harmonies; // the chord patterns, each moved by -6 to 6 semitones
    std::vector<Onsets> kicks;      // of each drum phrase

    void addPattern(const Score& pattern);
    void addDrums(const Score& drums);
};

// The notes of a score as an arrangement plays them.
HeardNotes heardNotes(const Score& score);

// The chords of a pattern, moved by so many semitones.
std::vector<HeardChord> heardChords(const Score& pattern, int move);

// What is heard of one phrase in its company.
struct PhraseMeasure {
    Share outside; // of the time, a tone outside the chord
    Share met;     // chord changes
    Share roots;   // chords
    Share kicks;   // notes
    Share repeats; // steps
};

PhraseMeasure measured(const Score& score, const PhraseCompany& company);

// One plain line for each bound that a phrase breaks in its company. A colour keeps all but those of changes,
// roots and kicks.
std::vector<std::string> lintMeasure(const Score& score, const PhraseCompany& company);

// The places that tell two phrases of one kind apart: of drums a row of kicks and one of snares.
std::vector<Onsets> placesOf(const Score& score);

// Whether two chord patterns have the same chords at the same times, up to a transposition.
bool areOnePattern(const Score& one, const Score& other);

} // namespace volvelle
