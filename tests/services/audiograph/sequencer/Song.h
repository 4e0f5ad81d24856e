#pragma once

#include "services/musicsequence/MusicSequence.h"

#include <cstdint>
#include <vector>

namespace volvelle::test {

// A sequence written event by event, and its file.
class Song {
public:
    Song();

    Song& tempo(double beat, double bpm);
    Song& note(double beat, int channel, int key, int velocity, double duration, int release = 0);
    Song& message(double beat, int status, int data1, int data2 = 0);
    Song& exclusive(double beat, const std::vector<std::uint8_t>& bytes);
    Song& text(int type, const char* characters);
    Song& length(double beats);

    // At 480 pulses a beat.
    std::vector<std::uint8_t> file() const;

private:
    MusicSequence sequence;
    MusicTrack track;
};

} // namespace volvelle::test
