#include "base/Checked.h"
#include "base/Console.h"
#include "base/Text.h"
#include "phrases/MIDIChordPhrase.h"

#include <algorithm>

namespace volvelle {

namespace {

constexpr std::uint8_t chordVelocity = 100;
constexpr double defaultDuration = 0.25; // beats

std::uint8_t keyOf(int tone, std::uint8_t baseC)
{
    const auto key = checkedAdd(checkedCast<std::uint8_t>(tone), baseC);
    return key > 127 ? static_cast<std::uint8_t>(key - 127) : key;
}

double playedDuration(const ChordEvent& chord, std::size_t tone)
{
    return chord.notes.empty() ? defaultDuration
                               : chord.notes[std::min(tone, chord.notes.size() - 1)]->duration;
}

} // namespace

void MIDIChordPhrase::regenerateEvents()
{
    generatedEvents.clear();
    std::vector<double> positions;
    positions.reserve(chords.size() + 1);
    for (const auto& chord : chords) {
        positions.push_back(chord->position);
    }
    positions.push_back(MAXBEATLENGTH);
    int id = 0;
    for (std::size_t place = 0; place < chords.size(); ++place) {
        ChordEvent& chord = *chords[place];
        if (isMasterTrack) {
            chord.notes.clear();
        }
        const std::vector<int>& tones = required(chord.nrule).rule;
        for (std::size_t tone = 0; tone < tones.size(); ++tone) {
            const auto note = std::make_shared<PhraseEvent>();
            note->id = id++;
            note->type = PhraseEvent::noteOn;
            note->channel = checkedCast<std::uint8_t>(channel);
            note->number = keyOf(tones[tone], baseC);
            note->value = chordVelocity;
            note->position = chord.position;
            if (isMasterTrack) {
                keepChordNote(chord, note, place, positions);
            } else {
                note->duration = playedDuration(chord, tone);
                generatedEvents.push_back(note);
            }
        }
    }
}

void MIDIChordPhrase::keepChordNote(ChordEvent& chord, const std::shared_ptr<PhraseEvent>& note,
                                    std::size_t place, const std::vector<double>& positions)
{
    if (place + 1 >= positions.size()) {
        warn("The position is out of index.");
        return;
    }
    const double span = positions[place + 1] - positions[place];
    if (!(span > 0.0)) {
        return;
    }
    note->duration = span - DONOTOVERLAPP;
    if (!(note->duration >= MINDURATION)) {
        warn(concat("A chord event is too short ", note->duration, " and filtered out."));
        note->duration = MINDURATION;
        return;
    }
    chord.notes.push_back(note);
    generatedEvents.push_back(note);
}

void MIDIChordPhrase::updateChordEvents()
{
    loadedEvents.clear();
    for (const auto& chord : chords) {
        loadedEvents.insert(loadedEvents.end(), chord->notes.begin(), chord->notes.end());
        findChordRule(*chord);
    }
    generatedEvents = loadedEvents;
}

void MIDIChordPhrase::transposeTrackChords(MIDIChordPhrase& track)
{
    if (!isMasterTrack) {
        directPrint("Error: Only a master track can transpose other tracks.");
        return;
    }
    const std::vector<double> positions = getChordPositions();
    for (std::size_t i = 0; i + 1 < positions.size(); ++i) {
        transposeChords(positions[i], positions[i + 1], track, checkedCast<int>(i));
    }
    track.regenerateEvents();
}

void MIDIChordPhrase::transposeChords(double from, double to, MIDIChordPhrase& track, int index)
{
    if (std::cmp_greater_equal(index, chords.size())) {
        directPrint("Error: The index exceeds the master chords count.");
        return;
    }
    for (const auto& chord : track.chords) {
        if (chord->position < from || chord->position >= to) {
            continue;
        }
        ChordRule& master = required(checkedAt(chords, index)->nrule);
        std::ranges::sort(master.rule);
        const auto moved = std::make_shared<ChordRule>();
        moved->index = master.index;
        moved->inversion = master.inversion;
        moved->longName = master.longName + " (*)";
        moved->shortName = master.shortName + " (*)";
        ChordRule& own = required(chord->nrule);
        std::ranges::sort(own.rule);
        moved->rule = chordRules().transpose(master, own.rule);
        chord->nrule = moved;
    }
}

} // namespace volvelle
