#pragma once

#include <vector>

namespace volvelle {

// Beats to seconds and back. Begins with 120 beats a minute; past the last tempo it goes on for ever.
class TempoMap {
public:
    static constexpr double defaultTempo = 120.0; // beats a minute

    // From `beat` on, `bpm` beats a minute. In the order of beats; a second tempo at one beat wins. Tempos
    // that are not finite or not above 0 are ignored.
    void add(double beat, double bpm);

    double seconds(double beat) const;
    double beats(double seconds) const;

    // The tempo at beat 0.
    double firstTempo() const { return 60.0 / pieces.front().secondsPerBeat; }

private:
    struct Piece {
        double beat;
        double seconds;
        double secondsPerBeat;
    };

    std::vector<Piece> pieces{{0.0, 0.0, 60.0 / defaultTempo}}; // never empty
};

} // namespace volvelle
