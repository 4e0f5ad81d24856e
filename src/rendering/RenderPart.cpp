#include "rendering/RenderPart.h"

#include "base/realtime/AudioSink.h"
#include "rendering/BoundSpans.h"

#include <algorithm>
#include <cmath>
#include <limits>

namespace volvelle {

namespace {

constexpr double blocksPerSecond = AudioSource::sampleRate / RenderPart::blockFrames;
constexpr double shortestPart = 10.0;                                              // seconds
constexpr double longestLength = RenderPart::longestPiece / blocksPerSecond + 1.0; // seconds

int numberOfParts(double seconds, int cores)
{
    if (cores == 1) {
        return 1;
    }
    const double most = std::floor(seconds / shortestPart);
    const double rounds = std::ceil(seconds / RenderPart::longestPart / cores);
    return static_cast<int>(std::clamp(rounds * cores, 1.0, std::max(1.0, most)));
}

double beatsOf(const SequencerEvents& events)
{
    double beats = 0.0;
    for (const SequencerTrackInfo& track : events.tracks) {
        beats = std::max(beats, track.lengthInBeats);
    }
    return beats;
}

double lengthOf(const SequencerEvents& events)
{
    return std::min(events.tempo.seconds(beatsOf(events)), longestLength);
}

// The block of the first beat from one on where the piece can be cut; -1 where there is none soon.
std::int64_t seamFrom(double beat, const SequencerEvents& events, const BoundSpans& bound)
{
    constexpr double farthest = 32.0; // beats
    for (double seam = beat; seam < beat + farthest; seam += 1.0) {
        const double block = std::floor(events.tempo.seconds(seam) * blocksPerSecond);
        if (!bound.holds(block / blocksPerSecond)) {
            return static_cast<std::int64_t>(block);
        }
    }
    return -1;
}

// Into so many at most.
void cut(std::vector<RenderPart>& parts, const SequencerEvents& events, double seconds, int count)
{
    const BoundSpans bound(events);
    for (int i = 1; i < count; ++i) {
        RenderPart part;
        part.beginBlock = seamFrom(std::ceil(events.tempo.beats(seconds * i / count)), events, bound);
        part.beginBeats = events.tempo.beats(static_cast<double>(part.beginBlock) / blocksPerSecond);
        if (part.beginBlock > parts.back().beginBlock) {
            parts.back().endBlock = part.beginBlock;
            parts.back().endBeats = part.beginBeats;
            parts.push_back(part);
        }
    }
}

} // namespace

std::vector<RenderPart> cutIntoParts(const SequencerEvents& events, int cores)
{
    const double seconds = lengthOf(events);
    const int count = numberOfParts(seconds, cores);
    std::vector<RenderPart> parts(1);
    if (count > 1) {
        cut(parts, events, seconds, count);
    }
    parts.back().endBlock = static_cast<std::int64_t>(std::ceil(seconds * blocksPerSecond));
    parts.back().endBeats = std::numeric_limits<double>::infinity();
    for (RenderPart& part : parts) {
        part.lastBlock = parts.back().endBlock + RenderPart::longestTail;
    }
    return parts;
}

RenderPart sequencedPart(const SequencerEvents& events, const FileTempo& tempo)
{
    RenderPart part;
    part.isSequenced = true;
    const double blocks = std::ceil(tempo.frameAt(beatsOf(events)) / RenderPart::blockFrames);
    part.endBlock = 1 + static_cast<std::int64_t>(std::min(blocks, longestLength * blocksPerSecond));
    part.endBeats = std::numeric_limits<double>::infinity();
    part.lastBlock = part.endBlock + RenderPart::longestTail;
    return part;
}

} // namespace volvelle
