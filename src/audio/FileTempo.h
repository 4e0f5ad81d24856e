#pragma once

#include "services/musicsequence/MusicSequence.h"

#include <cstdint>
#include <vector>

namespace volvelle {

// A stretch of a block without a change of tempo, and where the file stands after it.
struct FileStep {
    int frames = 0;
    std::int64_t sample = 0; // of the file
};

// How fast a list runs that is stamped at 120 beats a minute: which of its samples is due after how many
// frames, by the tempo track of its sequence. At 120 a frame is a sample. Tempi below 12 and above 1200 beats
// a minute count as these: a realtime sequencer runs no slower and no faster. Frames and samples count from
// the start of the file; both have the same rate.
class FileTempo {
public:
    static constexpr double slowest = 12.0; // beats a minute, as the next
    static constexpr double usual = 120.0;
    static constexpr double fastest = 1200.0;

    // Hz.
    explicit FileTempo(double samplerate = 48000.0) : samplesPerBeat(samplerate * 60.0 / usual) {}

    // Reads the tempo track, without the rounding that the realtime form of its events has. Answers a failure
    // of the service; what it had then stays in part. [main]
    [[nodiscard]] OSStatus read(const MusicSequence& sequence);

    // From `beat` on, in the order of beats; a second tempo at one beat wins. What is not finite or not above
    // 0 is passed over.
    void add(double beat, double bpm);

    // From `frame` on, up to `frames` frames and no farther than the next tempo. Steps that follow one
    // another drift from the file by no more than half a frame and half a sample. [any] No allocation.
    FileStep step(std::int64_t frame, int frames) const noexcept;

    // Frames from the start of the file to a beat.
    double frameAt(double beat) const;

private:
    struct Piece {
        double sample = 0.0; // where it begins, as the next
        double frame = 0.0;
        double rate = 1.0;           // samples for a frame
        std::int64_t firstFrame = 0; // not before `frame`

        std::int64_t firstSample() const { return static_cast<std::int64_t>(sample); }
    };

    const Piece& pieceAt(std::int64_t frame) const noexcept;

    double samplesPerBeat;
    std::vector<Piece> pieces{Piece{}}; // never empty
};

} // namespace volvelle
