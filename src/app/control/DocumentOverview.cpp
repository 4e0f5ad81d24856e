#include "app/control/DocumentOverview.h"

#include "base/Console.h"
#include "base/Text.h"
#include "inspection/FileDescription.h"
#include "phrases/ArrangementTracks.h"

#include <algorithm>
#include <array>
#include <cmath>

namespace volvelle {

namespace {

std::vector<DocumentOverview::Part> partsOf(const std::array<int, channelCount>& notes)
{
    std::vector<DocumentOverview::Part> parts;
    const auto add = [&](int channel) {
        const int count = notes[static_cast<std::size_t>(channel)];
        if (count > 0) {
            parts.push_back({channel, channelLabel(channel), count});
        }
    };
    for (const ArrangementTrack& track : arrangementTracks) {
        add(track.channel);
    }
    for (int channel = 0; channel < channelCount; ++channel) {
        if (arrangementTrackOf(channel) == nullptr) {
            add(channel);
        }
    }
    return parts;
}

} // namespace

int DocumentOverview::bars() const
{
    return static_cast<int>(std::ceil(std::min(beats, 1e8) / beatsPerBar));
}

std::string DocumentOverview::metaLine() const
{
    return concat(counted(bars(), "bar", "bars"), " · ", counted(notes, "note", "notes"));
}

std::string DocumentOverview::chordAt(double beat) const
{
    const auto next =
        std::ranges::find_if(chords, [beat](const Chord& chord) { return chord.position > beat; });
    return next == chords.begin() ? "" : std::prev(next)->name;
}

std::string DocumentOverview::description() const
{
    std::string result = metaLine();
    for (const Part& part : parts) {
        result += concat(". ", part.label, ": ", counted(part.notes, "note", "notes"));
    }
    for (const Chord& chord : chords) {
        result += concat(&chord == &chords.front() ? ". Chords: " : ", ", chord.name, " at ",
                         barAndBeat(chord.position));
    }
    return result;
}

std::string DocumentOverview::positionText(double beat) const
{
    const int whole = static_cast<int>(std::clamp(beat, 0.0, 1e8));
    const std::string chord = chordAt(beat);
    return concat("Bar ", whole / beatsPerBar + 1, ", beat ", whole % beatsPerBar + 1,
                  chord.empty() ? "" : ", ", chord);
}

DocumentOverview overviewOf(const std::vector<std::uint8_t>& data)
{
    DocumentOverview overview;
    FileDescription file;
    const ConsoleSilence silence; // the finding of chords has a line for each
    if (describeData(data, file) != noErr) {
        return overview;
    }
    std::array<int, channelCount> notes{};
    for (const FoundTrack& track : file.tracks) {
        for (const FoundNote& note : track.notes) {
            ++notes[static_cast<std::size_t>(note.channel) % notes.size()];
            ++overview.notes;
        }
    }
    overview.parts = partsOf(notes);
    for (const FoundChord& chord : file.chords) {
        overview.chords.push_back({chord.position, chord.shortName});
    }
    overview.beats = file.length;
    overview.bpm = file.tempo.empty() ? overview.bpm : file.tempo.front().bpm;
    return overview;
}

std::string barAndBeat(double beat)
{
    const int whole = static_cast<int>(std::clamp(beat, 0.0, 1e8));
    return concat(whole / DocumentOverview::beatsPerBar + 1, ".", whole % DocumentOverview::beatsPerBar + 1);
}

} // namespace volvelle
