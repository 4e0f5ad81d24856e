#include "services/audiograph/sequencer/TempoMap.h"

#include <algorithm>
#include <cmath>

namespace volvelle {

void TempoMap::add(double beat, double bpm)
{
    if (!std::isfinite(bpm) || bpm <= 0.0) {
        return;
    }
    const Piece piece{beat, seconds(beat), 60.0 / bpm};
    if (pieces.back().beat == beat) {
        pieces.back() = piece;
    } else {
        pieces.push_back(piece);
    }
}

double TempoMap::seconds(double beat) const
{
    const auto behind = std::upper_bound(pieces.begin() + 1, pieces.end(), beat,
                                         [](double b, const Piece& p) { return b < p.beat; });
    const Piece& piece = *(behind - 1);
    return piece.seconds + (beat - piece.beat) * piece.secondsPerBeat;
}

double TempoMap::beats(double seconds) const
{
    const auto behind = std::upper_bound(pieces.begin() + 1, pieces.end(), seconds,
                                         [](double s, const Piece& p) { return s < p.seconds; });
    const Piece& piece = *(behind - 1);
    return piece.beat + (seconds - piece.seconds) / piece.secondsPerBeat;
}

} // namespace volvelle
