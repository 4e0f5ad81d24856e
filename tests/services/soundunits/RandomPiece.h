#pragma once

#include "tests/services/audiograph/sequencer/Song.h"

#include <cstdint>
#include <random>
#include <vector>

namespace volvelle::test {

// Lays random messages that set something into a song: all controllers, parameters, programs and banks,
// pressures, bends, resets, tunings and other settings by system exclusive, on channels 0, 1 and 9.
class RandomPiece {
public:
    explicit RandomPiece(unsigned seed) : random(seed) {}

    // So many of them at random from `begin` up to `end` beats, in order.
    void addStates(Song& song, double begin, double end, int count);

    // A note of each channel each quarter beat; some sound on while their keys are struck again.
    void addNotes(Song& song, double begin, double end);

private:
    static constexpr int channels[] = {0, 1, 9};

    int below(int bound) { return static_cast<int>(random() % static_cast<unsigned>(bound)); }

    void addState(Song& song, double beat);
    void addMessage(Song& song, double beat, int status, int data1, int least, int count);
    void addParameter(Song& song, double beat, int channel);
    void addExclusive(Song& song, double beat);

    std::mt19937 random;
};

} // namespace volvelle::test
