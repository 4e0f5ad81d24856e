#pragma once

#include "tests/phrases/PhraseFiles.h"

#include <cstdint>
#include <random>

namespace volvelle::test {

// Fills libraries with files that no musician would write: one to three a folder, of odd lengths, off the
// grid, with clusters of at most ten notes on one sixteenth, single tones, no notes at all, notes at beat 16
// and after it, and the lowest and the highest keys. The same libraries in every run.
class RandomLibrary {
public:
    explicit RandomLibrary(std::uint64_t seed) : engine(seed) {}

    void fill(PhraseLibrary& library);

private:
    int draw(int lower, int upper);
    int key();
    PhraseFile chordFile();
    PhraseFile trackFile();

    std::mt19937_64 engine;
};

} // namespace volvelle::test
