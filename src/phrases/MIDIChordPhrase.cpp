#include "phrases/MIDIChordPhrase.h"

#include "base/Checked.h"
#include "base/Console.h"
#include "base/Text.h"

#include <algorithm>
#include <array>
#include <cmath>

namespace volvelle {

namespace {

std::shared_ptr<ChordRule> copyOf(const ChordRule& rule)
{
    return std::make_shared<ChordRule>(rule);
}

std::shared_ptr<ChordRule> inexactCopyOf(const ChordRule& rule)
{
    auto copy = copyOf(rule);
    copy->shortName = "(?)" + rule.shortName;
    copy->longName = "(?)" + rule.longName;
    return copy;
}

using SoundingNotes = std::array<int, 256>; // how many sound, by key

std::vector<int> keysOf(const SoundingNotes& notes)
{
    std::vector<int> keys;
    for (std::size_t key = 0; key < notes.size(); ++key) {
        if (notes.at(key) > 0) {
            keys.push_back(static_cast<int>(key));
        }
    }
    return keys;
}

void append(PhraseEvents& to, const PhraseEvents& from)
{
    to.insert(to.end(), from.begin(), from.end());
}

} // namespace

MIDIChordPhrase::MIDIChordPhrase() = default;

MIDIChordPhrase::~MIDIChordPhrase() = default;

std::shared_ptr<MIDIChordPhrase> MIDIChordPhrase::make()
{
    return std::shared_ptr<MIDIChordPhrase>(new MIDIChordPhrase);
}

ChordRules& MIDIChordPhrase::chordRules()
{
    static ChordRules rules;
    return rules;
}

void MIDIChordPhrase::savePhrase(const std::filesystem::path& url)
{
    MIDIPhrase::savePhrase(url);
}

void MIDIChordPhrase::loadPhrase(const std::filesystem::path& url, int transpose)
{
    MIDIPhrase::loadPhrase(url, transpose);
    buildChords();
}

void MIDIChordPhrase::buildChords()
{
    chords.clear();
    ascends = true;
    SoundingNotes sounding{};
    for (const auto& event : loadedEvents) {
        int& count = sounding.at(event->number);
        if (event->type == PhraseEvent::noteOff) {
            count = std::max(0, count - 1);
        } else if (event->type == PhraseEvent::noteOn) {
            ++count;
            createChordRule(keysOf(sounding), event);
        }
    }
    if (isMasterTrack) {
        reduceChords();
    }
    regenerateEvents();
}

void MIDIChordPhrase::createChordRule(const std::vector<int>& sounding,
                                      const std::shared_ptr<PhraseEvent>& event)
{
    const auto matches = chordRules().findMatches(sounding);
    if (matches.empty()) {
        directPrint("MIDIChordPhrase: Warning: No chord detected.");
        loadWarnings.emplace_back("No chord detected.");
        return;
    }
    const int index = chordRules().getMatchingIndex();
    if (index == -1) {
        directPrint("MIDIChordPhrase: Warning: No exact chord match yet (possibly precalculation).");
        return;
    }
    if (std::cmp_greater_equal(index, matches.size())) {
        return;
    }
    const auto chord = std::make_shared<ChordEvent>();
    chord->notes = {event};
    chord->position = quantizesEvents ? std::round(event->position * quantizePrecision) / quantizePrecision
                                      : event->position;
    chord->nrule = copyOf(*checkedAt(matches, index));
    directPrint("Following chord rule was detected: ", chord->nrule->longName, " at ", chord->position, ".");
    addChord(chord);
}

std::shared_ptr<ChordRule> MIDIChordPhrase::findChordRule(ChordEvent& chord)
{
    std::vector<int> tones;
    for (const auto& note : chord.notes) {
        tones.push_back(note->number % 12);
    }
    const auto matches = chordRules().findMatches(tones);
    const int index = chordRules().getMatchingIndex();
    if (matches.empty()) {
        directPrint("MIDIChordPhrase::findChordRule() : Warning: No chord detected.");
    } else if (index == -1) {
        chord.nrule = inexactCopyOf(*matches.back());
        directPrint("MIDIChordPhrase::findChordRule() : Warning: No exact chord match.");
        return chord.nrule;
    } else if (std::cmp_less(index, matches.size())) {
        chord.nrule = copyOf(*checkedAt(matches, index));
        directPrint("MIDIChordPhrase::findChordRule() : Following chord rule was detected: ",
                    chord.nrule->longName, " at ", chord.position, ".");
        return chord.nrule;
    }
    chord.nrule = std::make_shared<ChordRule>();
    chord.nrule->shortName = "???";
    chord.nrule->longName = "NO CHORD";
    chord.nrule->rule = tones;
    return chord.nrule;
}

void MIDIChordPhrase::addChord(const std::shared_ptr<ChordEvent>& chord)
{
    auto place = ascends ? std::ranges::lower_bound(chords, chord->position, {}, &ChordEvent::position)
                         : chords.begin();
    for (; place != chords.end(); ++place) {
        const auto& element = *place;
        if (element->position != chord->position) {
            continue;
        }
        if (!chord->nrule) {
            directPrint("MIDIChordPhrase: Warning: A chord without a rule.");
            break;
        }
        if (!element->nrule) {
            directPrint("MIDIChordPhrase: Warning: A chord without a rule in chords array.");
            break;
        }
        if (chord->nrule->rule.size() > element->nrule->rule.size()) {
            append(chord->notes, element->notes);
            chords.erase(place);
            break;
        }
    }
    if (!chords.empty() && chords.back()->position == chord->position) {
        warn(concat("Multiple chords at position ", chord->position, " were filtered out."));
        append(chord->notes, chords.back()->notes);
        return;
    }
    ascends = ascends && (chords.empty() || chords.back()->position <= chord->position);
    chords.push_back(chord);
}

void MIDIChordPhrase::reduceChords()
{
    int lastIndex = -1;
    std::vector<std::shared_ptr<ChordEvent>> reduced;
    for (const auto& chord : chords) {
        if (required(chord->nrule).index == lastIndex) {
            chord->nrule = nullptr;
        } else {
            lastIndex = chord->nrule->index;
            reduced.push_back(chord);
        }
    }
    chords = std::move(reduced);
}

std::vector<double> MIDIChordPhrase::getChordPositions()
{
    constexpr double end = MAXBEATLENGTH;
    std::vector<double> positions;
    auto previous = chords.empty() ? nullptr : chords.front();
    for (const auto& chord : chords) {
        positions.push_back(chord->position);
        previous->duration = chord->position - previous->position;
        previous = chord;
    }
    positions.push_back(end);
    if (previous) {
        previous->duration = end - previous->position;
    }
    return positions;
}

} // namespace volvelle
