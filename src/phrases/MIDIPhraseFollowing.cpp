#include "base/Checked.h"
#include "base/Console.h"
#include "phrases/MIDIChordPhrase.h"
#include "phrases/MIDIPhrase.h"

#include <algorithm>

namespace volvelle {

namespace {

constexpr int numberOfKeys = 128;

} // namespace

void MIDIPhrase::transposeTrackNotes(MIDIChordPhrase& chordTrack)
{
    generatedEvents.clear();
    const std::vector<double> positions = chordTrack.getChordPositions();
    for (std::size_t i = 0; i + 1 < positions.size(); ++i) {
        transposeNotesToChord(chordTrack, positions[i], positions[i + 1], checkedCast<int>(i));
    }
}

void MIDIPhrase::transposeNotesToChord(MIDIChordPhrase& chordTrack, double from, double to, int index)
{
    if (std::cmp_greater_equal(index, chordTrack.chords.size())) {
        directPrint("Error: The index exceeds the master chords count.");
        return;
    }
    int id = 0;
    for (const auto& event : loadedEvents) {
        if (event->type != PhraseEvent::noteOn || event->position < from || event->position >= to) {
            continue;
        }
        const ChordRule& rule = required(checkedAt(chordTrack.chords, index)->nrule);
        std::uint8_t candidate = event->number;
        int tried = 0;
        while (!transpose(rule, candidate, event->position)) {
            if (++tried > numberOfKeys) {
                fatalStop(endlessMessage);
            }
            candidate =
                candidate >= numberOfKeys - 1 ? std::uint8_t{0} : static_cast<std::uint8_t>(candidate + 1);
        }
        const auto moved = std::make_shared<PhraseEvent>(*event);
        moved->id = id++;
        moved->number = candidate;
        generatedEvents.push_back(moved);
    }
}

bool MIDIPhrase::transpose(const ChordRule& rule, std::uint8_t note, double position)
{
    return std::ranges::any_of(rule.rule, [&](int tone) {
        return note % 12 == tone && !hasNoteAtPosition(generatedEvents, note, position);
    });
}

bool MIDIPhrase::hasNoteAtPosition(const PhraseEvents& notes, std::uint8_t note, double position)
{
    return std::ranges::any_of(
        notes, [&](const auto& event) { return event->position == position && event->number == note; });
}

} // namespace volvelle
