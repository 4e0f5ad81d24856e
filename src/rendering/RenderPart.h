#pragma once

#include "audio/FileTempo.h"
#include "services/audiograph/sequencer/SequencerEvents.h"

#include <cstdint>
#include <limits>
#include <vector>

namespace volvelle {

// A stretch of a piece that is rendered by itself: with the notes that begin in it, until they have died
// away. The parts of a piece are added up.
struct RenderPart {
    static constexpr int blockFrames = 512;
    static constexpr int quietBlocksAtEnd = 24;    // a quarter of a second of silence ends a tail
    static constexpr int longestTail = 2813;       // blocks, thirty seconds
    static constexpr double longestPart = 300.0;   // seconds, where it can be cut
    static constexpr int longestPiece = 8'100'000; // blocks, twenty-four hours

    std::int64_t beginBlock = 0; // where it begins in the piece
    std::int64_t endBlock = 0;   // where the next part begins, or the piece ends
    // Where it ends at the latest: the piece and the longest tail are over.
    std::int64_t lastBlock = std::numeric_limits<std::int64_t>::max();
    double beginBeats = 0.0; // the first note that belongs to it
    double endBeats = 0.0;   // the first note that does not
    // Played by the realtime sequencer in the instrument: the whole piece.
    bool isSequenced = false;
};

// Cuts a piece into one part, or into equal parts for so many cores at once: each begins with a beat where
// no note changes one before it or is changed by it, and lasts some ten seconds to five minutes, longer where
// there is no such beat. A piece longer than the longest ends a second after that. [any]
std::vector<RenderPart> cutIntoParts(const SequencerEvents& events, int cores);

// The piece as one part for the realtime sequencer, which begins a block later, and keeps within limits of
// its own where the tempo goes beyond them. [any]
RenderPart sequencedPart(const SequencerEvents& events, const FileTempo& tempo);

} // namespace volvelle
