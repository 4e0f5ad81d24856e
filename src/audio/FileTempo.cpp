#include "audio/FileTempo.h"

#include "services/musicsequence/TrackWalk.h"

#include <algorithm>
#include <cmath>

namespace volvelle {

OSStatus FileTempo::read(const MusicSequence& sequence)
{
    MusicTrack track;
    const OSStatus status = MusicSequenceGetTempoTrack(sequence, track);
    return status != noErr ? status : forEachEvent(track, [this](const TrackEvent& event) {
        if (event.type == kMusicEventType_ExtendedTempo) {
            add(event.time, event.record<ExtendedTempoEvent>().bpm);
        }
    });
}

void FileTempo::add(double beat, double bpm)
{
    if (!std::isfinite(bpm) || bpm <= 0.0) {
        return;
    }
    Piece piece;
    piece.sample = beat * samplesPerBeat;
    piece.frame = frameAt(beat);
    piece.rate = std::clamp(bpm, slowest, fastest) / usual;
    piece.firstFrame = static_cast<std::int64_t>(std::ceil(piece.frame));
    if (pieces.back().sample == piece.sample) {
        pieces.back() = piece;
    } else {
        pieces.push_back(piece);
    }
}

double FileTempo::frameAt(double beat) const
{
    const double sample = beat * samplesPerBeat;
    const auto behind =
        std::ranges::upper_bound(pieces.begin() + 1, pieces.end(), sample, {}, &Piece::sample);
    const Piece& piece = *(behind - 1);
    return piece.frame + (sample - piece.sample) / piece.rate;
}

const FileTempo::Piece& FileTempo::pieceAt(std::int64_t frame) const noexcept
{
    return *(std::ranges::upper_bound(pieces.begin() + 1, pieces.end(), frame, {}, &Piece::firstFrame) - 1);
}

// Aims half a sample ahead and half a frame back: what a cycle truncates then lies around its place. Not
// above the usual tempo, where nothing would be left to make up for it before the next one.
FileStep FileTempo::step(std::int64_t frame, int frames) const noexcept
{
    const Piece& piece = pieceAt(frame);
    const Piece* const next = &piece == &pieces.back() ? nullptr : &piece + 1;
    const std::int64_t end = frame + frames;
    if (next != nullptr && next->firstFrame <= end) {
        return {static_cast<int>(next->firstFrame - frame), next->firstSample()};
    }
    const double behind = (static_cast<double>(end) - piece.frame) * piece.rate;
    const auto sample = static_cast<std::int64_t>(
        std::floor(piece.sample + behind + std::max(0.0, 0.5 * (1.0 - piece.rate))));
    const std::int64_t last = next == nullptr ? sample : next->firstSample();
    return {frames, std::max(piece.firstSample(), std::min(sample, last))};
}

} // namespace volvelle
