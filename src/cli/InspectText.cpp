#include "cli/InspectText.h"

#include "base/Text.h"

#include <algorithm>

namespace volvelle {

namespace {

std::string keyRange(const std::vector<FoundNote>& notes)
{
    const auto [low, high] = std::ranges::minmax(notes, {}, &FoundNote::number);
    return concat("keys ", low.number, " to ", high.number);
}

std::string trackLine(const FoundTrack& track)
{
    std::string line = concat("  ", track.index, "  ");
    line += track.channel ? concat("channel ", *track.channel + 1) : std::string("no single channel");
    line += concat(", ", track.notes.size(), " notes");
    if (!track.notes.empty()) {
        line += ", " + keyRange(track.notes);
    }
    line += concat(", ", track.events.size(), " other events, ", roundedText(track.length), " beats");
    return track.name.empty() ? line : concat(line, ", \"", track.name, "\"");
}

} // namespace

void printInspection(const std::filesystem::path& file, const FileDescription& description,
                     CommandOutput& output)
{
    output.result(concat("'", file.string(), "': ", roundedText(description.length), " beats, ",
                         description.division, " ticks to the beat"));
    output.result("Tempo");
    if (description.tempo.empty()) {
        output.result("  none, so 120.0 beats per minute");
    }
    for (const FoundTempo& tempo : description.tempo) {
        output.result(
            concat("  ", roundedText(tempo.position), "  ", roundedText(tempo.bpm), " beats per minute"));
    }
    output.result("Tracks");
    for (const FoundTrack& track : description.tracks) {
        output.result(trackLine(track));
    }
    output.result("Chords");
    for (const FoundChord& chord : description.chords) {
        output.result(concat("  ", roundedText(chord.position), "  ", chord.shortName, " for ",
                             roundedText(chord.duration), " beats"));
    }
    if (const std::string warning = warningLine(description); !warning.empty()) {
        output.result(warning);
    }
}

} // namespace volvelle
