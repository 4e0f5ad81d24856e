#include "base/Checked.h"
#include "base/Console.h"
#include "phrases/ChordFollowing.h"
#include "phrases/MIDIChordPhrase.h"
#include "phrases/MIDIPhrase.h"

#include <algorithm>

namespace volvelle {

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
        const auto key = nextFreeKey(event->number, [&](std::uint8_t candidate) {
            return transpose(rule, candidate, event->position);
        });
        if (!key) {
            fatalStop(endlessMessage);
        }
        const auto moved = std::make_shared<PhraseEvent>(*event);
        moved->id = id++;
        moved->number = *key;
        generatedEvents.push_back(moved);
    }
}

bool MIDIPhrase::transpose(const ChordRule& rule, std::uint8_t note, double position)
{
    return isFreeTone(
        note, [&](int tone) { return std::ranges::find(rule.rule, tone) != rule.rule.end(); },
        [&](std::uint8_t key) { return hasNoteAtPosition(generatedEvents, key, position); });
}

bool MIDIPhrase::hasNoteAtPosition(const PhraseEvents& notes, std::uint8_t note, double position)
{
    return std::ranges::any_of(
        notes, [&](const auto& event) { return event->position == position && event->number == note; });
}

} // namespace volvelle
