#include "cli/sound/PlayDisplay.h"

#include "base/Text.h"
#include "cli/TerminalWidth.h"
#include "cli/sound/TerminalKeys.h"

#include <algorithm>
#include <bitset>
#include <cmath>
#include <cstdio>
#include <unistd.h>
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
    if (isatty(STDOUT_FILENO) == 0 || TerminalKeys::isInBackgroundOf(STDOUT_FILENO)) {
        return;
    }
    std::string next = line(position, isPaused);
    next.resize(std::min(next.size(), terminalColumns(STDOUT_FILENO) - 1));
    if (next != shown) {
        const std::string whole = concat("\r", next, "\x1B[K");
        std::fwrite(whole.data(), 1, whole.size(), stdout);
        std::fflush(stdout);
        shown = std::move(next);
    }
}

void PlayDisplay::finish()
{
    if (!shown.empty()) {
        std::fputs("\n", stdout);
        std::fflush(stdout);
        shown.clear();
    }
}

} // namespace volvelle
