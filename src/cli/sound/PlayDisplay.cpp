#include "cli/sound/PlayDisplay.h"

#include "base/Text.h"

#include <bitset>
#include <cmath>
#include <utility>

namespace volvelle {

namespace {

constexpr int beatsPerBar = 4;

double inTenths(double value)
{
    return std::floor(value * 10.0) / 10.0;
}

std::string chordAt(const FileDescription& description, double position)
{
    std::string name = "-";
    for (const FoundChord& chord : description.chords) {
        if (chord.position <= position) {
            name = chord.shortName;
        }
    }
    return name;
}

std::string soundingChannels(const FileDescription& description, double position)
{
    std::bitset<16> channels;
    for (const FoundTrack& track : description.tracks) {
        for (const FoundNote& note : track.notes) {
            if (note.position <= position && position < note.position + note.duration) {
                channels.set(note.channel);
            }
        }
    }
    std::string line;
    for (std::size_t channel = 0; channel < channels.size(); ++channel) {
        if (channels[channel]) {
            line += concat(" ", channel + 1);
        }
    }
    return line.empty() ? " -" : line;
}

} // namespace

PlayDisplay::PlayDisplay(FileDescription file) : description(std::move(file)) {}

std::string PlayDisplay::line(double position, bool isPaused) const
{
    const int beat = static_cast<int>(position);
    return concat(isPaused ? "Paused  " : "", "Bar ", beat / beatsPerBar + 1, ".", beat % beatsPerBar + 1,
                  "  ", chordAt(description, position), "  channels", soundingChannels(description, position),
                  "  ", inTenths(position), " of ", inTenths(description.length), " beats");
}

void PlayDisplay::show(double position, bool isPaused)
{
    shown.show(line(position, isPaused));
}

} // namespace volvelle
