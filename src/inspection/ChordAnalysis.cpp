#include "inspection/ChordAnalysis.h"

#include "phrases/ArrangementTracks.h"
#include "phrases/MIDIChordPhrase.h"

#include <algorithm>

namespace volvelle {

namespace {

void addNote(PhraseEvents& events, const FoundNote& note)
{
    const auto on = std::make_shared<PhraseEvent>();
    on->type = PhraseEvent::noteOn;
    on->number = note.number;
    on->position = note.position;
    on->duration = note.duration;
    const auto off = std::make_shared<PhraseEvent>(*on);
    off->type = PhraseEvent::noteOff;
    off->position = note.position + note.duration;
    events.push_back(on);
    events.push_back(off);
}

} // namespace

std::vector<FoundChord> findChords(const std::vector<FoundNote>& notes, double length)
{
    const bool hasChordTrack =
        std::ranges::any_of(notes, [](const auto& note) { return note.channel == chordChannel; });
    const auto track = MIDIChordPhrase::make();
    track->isMasterTrack = true;
    for (const FoundNote& note : notes) {
        if (hasChordTrack ? note.channel == chordChannel : note.channel != drumChannel) {
            addNote(track->loadedEvents, note);
        }
    }
    std::ranges::stable_sort(track->loadedEvents, {}, [](const auto& event) { return event->position; });
    track->buildChords();

    std::vector<FoundChord> found;
    for (const auto& chord : track->chords) {
        FoundChord entry{chord->position, 0.0, chord->nrule->shortName, chord->nrule->longName, {}};
        for (const int tone : chord->nrule->rule) {
            entry.notes.push_back(tone + track->baseC);
        }
        found.push_back(std::move(entry));
    }
    for (std::size_t i = 0; i < found.size(); ++i) {
        const double end = i + 1 < found.size() ? found[i + 1].position : length;
        found[i].duration = std::max(0.0, end - found[i].position);
    }
    return found;
}

} // namespace volvelle
