#include "theory/ChordRules.h"

#include "base/Checked.h"
#include "base/Console.h"
#include "base/RandomSource.h"
#include "base/Text.h"
#include "theory/EnumMIDIChords.h"
#include "theory/EnumMIDINotes.h"

#include <algorithm>
#include <span>

namespace volvelle {

namespace {

constexpr int octaveSize = 12;
constexpr int noteCount = 128;

enum Key { freeKey, chordTone, takenKey };

int wrappedNote(int note)
{
    constexpr int step = noteCount - 1;
    if (note > step) {
        return (note - 1) % step + 1;
    }
    return note < 0 ? (note % step + step) % step : note;
}

std::vector<int> ruleInKey(int row, int key)
{
    std::vector<int> rule = EnumMIDIChords::getRule(row);
    for (int& element : rule) {
        element += key;
        while (element >= octaveSize) {
            element -= octaveSize;
        }
    }
    return rule;
}

// True where the rule's first elements, as many as the pattern has, are all in the pattern.
bool beginsWithin(const std::vector<int>& rule, const std::vector<int>& pattern)
{
    return rule.size() >= pattern.size() &&
           std::ranges::all_of(std::span(rule).first(pattern.size()), [&pattern](int element) {
               return std::ranges::find(pattern, element) != pattern.end();
           });
}

} // namespace

ChordRules::ChordRules() : opattern(octaveSize), keys(noteCount)
{
    ChordRules::make();
}

void ChordRules::make()
{
    int counter = 0;
    for (int row = 0; row < EnumMIDIChords::NUMBEROFCHORDSINKEY; ++row) {
        for (int key = 0; key < octaveSize; ++key) {
            std::vector<int> elements = ruleInKey(row, key);
            if (elements.empty()) {
                continue;
            }
            auto rule = std::make_shared<ChordRule>();
            rule->index = counter++;
            rule->rule = std::move(elements);
            const std::string keyName = EnumMIDINotes::getName(key);
            rule->shortName = keyName + EnumMIDIChords::getShortName(row);
            rule->longName = keyName + " " + EnumMIDIChords::getLongName(row);
            rules.push_back(std::move(rule));
        }
    }
}

std::vector<std::shared_ptr<ChordRule>> ChordRules::findMatches(const std::vector<int>& sequence)
{
    exactMatch = -1;
    std::vector<std::shared_ptr<ChordRule>> matches;
    if (sequence.empty()) {
        return matches;
    }
    matches.reserve(EnumMIDIChords::NUMBEROFCHORDSINKEY);
    const std::vector<int> pattern = reduceToOctave(sequence);
    if (pattern.empty()) {
        return matches;
    }
    for (const auto& rule : rules) {
        if (!beginsWithin(rule->rule, pattern)) {
            continue;
        }
        if (rule->rule.size() == pattern.size()) {
            exactMatch = static_cast<int>(matches.size());
        }
        matches.push_back(rule);
    }
    return matches;
}

int ChordRules::getMatchingIndex() const
{
    return exactMatch;
}

std::shared_ptr<ChordRule>
ChordRules::getExactMatch(const std::vector<std::shared_ptr<ChordRule>>& values) const
{
    if (exactMatch < 0 || exactMatch >= static_cast<int>(values.size())) {
        return nullptr;
    }
    return values[static_cast<std::size_t>(exactMatch)];
}

std::vector<int> ChordRules::reduceToOctave(const std::vector<int>& notes)
{
    if (notes.empty()) {
        directPrint("Warning: The notes array is empty.");
        return notes;
    }
    countOctave(notes);
    std::vector<int> pitchClasses;
    for (int i = 0; i < octaveSize; ++i) {
        if (opattern[static_cast<std::size_t>(i)] > 0) {
            pitchClasses.push_back(i);
        }
    }
    return pitchClasses;
}

void ChordRules::countOctave(const std::vector<int>& notes)
{
    std::ranges::fill(opattern, 0);
    for (const int note : notes) {
        ++opattern[static_cast<std::size_t>(wrappedNote(note) % octaveSize)];
    }
}

std::vector<int> ChordRules::getOctavePattern() const
{
    return opattern;
}

std::vector<int> ChordRules::transpose(const ChordRule& rule, const std::vector<int>& notes)
{
    markChordTones(rule.rule, notes.size());
    const bool upward = randomInteger(0, 1) == 0;
    for (const int note : notes) {
        takeKey(note, upward);
    }
    std::vector<int> taken;
    taken.reserve(notes.size());
    for (int key = 0; key < noteCount; ++key) {
        if (keys[static_cast<std::size_t>(key)] == takenKey) {
            taken.push_back(key);
        }
    }
    return taken;
}

void ChordRules::markChordTones(const std::vector<int>& rule, std::size_t count)
{
    std::ranges::fill(keys, freeKey);
    // Beyond the rule's end the elements come round again.
    for (std::size_t i = 0; i < std::min(count, rule.size()); ++i) {
        if (rule[i] < 0 || rule[i] >= octaveSize) {
            continue;
        }
        for (int key = rule[i]; key < noteCount; key += octaveSize) {
            keys[static_cast<std::size_t>(key)] = chordTone;
        }
    }
}

// A search that wraps never comes to the key at the opposite end: past 127 it goes on at 1, below 0 at 126.
void ChordRules::takeKey(int note, bool upward)
{
    if (note > noteCount) {
        fatalStop(rangeMessage);
    }
    if (note == noteCount) {
        return;
    }
    for (int step = 0, key = note; step < noteCount; ++step) {
        int& state = checkedAt(keys, key);
        if (state == chordTone) {
            state = takenKey;
            return;
        }
        key += upward ? 1 : -1;
        if (key == noteCount) {
            key = 1;
        } else if (key < 0) {
            key = noteCount - 2;
        }
    }
    fatalStop(endlessMessage);
}

std::vector<int> ChordRules::getCurrentKeys() const
{
    return keys;
}

void ChordRules::dumpout() const
{
    directPrint("The count of chord rules is: ", rules.size());
    for (const auto& rule : rules) {
        directPrint(rule->index, ": ", rule->shortName, ", ", rule->longName);
    }
}

} // namespace volvelle
