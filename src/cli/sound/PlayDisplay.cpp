#include "cli/sound/PlayDisplay.h"

#include "base/Text.h"

#include <algorithm>
#include <cmath>
#include <utility>

namespace volvelle {

namespace {

constexpr int beatsPerBar = 4;

double inTenths(double value)
{
    return std::floor(value * 10.0) / 10.0;
}

} // namespace

PlayDisplay::PlayDisplay(FileDescription file) : length(file.length), chords(std::move(file.chords))
{
    addSpans(file);
}

void PlayDisplay::addSpans(const FileDescription& file)
{
    for (const FoundTrack& track : file.tracks) {
        for (const FoundNote& note : track.notes) {
            spans.at(note.channel).push_back({note.position, note.position + note.duration});
        }
    }
    for (std::vector<Span>& ofChannel : spans) {
        std::ranges::sort(ofChannel, {}, &Span::begin);
        std::vector<Span> apart;
        for (const Span& span : ofChannel) {
            if (apart.empty() || span.begin > apart.back().end) {
                apart.push_back(span);
            }
            apart.back().end = std::max(apart.back().end, span.end);
        }
        ofChannel = std::move(apart);
    }
}

std::string PlayDisplay::chordAt(double position) const
{
    const auto next = std::ranges::upper_bound(chords, position, {}, &FoundChord::position);
    return next == chords.begin() ? "-" : (next - 1)->shortName;
}

std::string PlayDisplay::soundingChannels(double position) const
{
    std::string line;
    for (std::size_t channel = 0; channel < spans.size(); ++channel) {
        const auto next = std::ranges::upper_bound(spans[channel], position, {}, &Span::begin);
        if (next != spans[channel].begin() && position < (next - 1)->end) {
            line += concat(" ", channel + 1);
        }
    }
    return line.empty() ? " -" : line;
}

std::string PlayDisplay::line(double position, bool isPaused) const
{
    const int beat = static_cast<int>(position);
    return concat(isPaused ? "Paused  " : "", "Bar ", beat / beatsPerBar + 1, ".", beat % beatsPerBar + 1,
                  "  ", chordAt(position), "  channels", soundingChannels(position), "  ", inTenths(position),
                  " of ", inTenths(length), " beats");
}

void PlayDisplay::show(double position, bool isPaused)
{
    shown.show(line(position, isPaused));
}

} // namespace volvelle
