#pragma once

#include "theory/ChordRule.h"

#include <memory>
#include <vector>

namespace volvelle {

// The catalogue of chord rules, by chord type and within it by key: "C8" is 0, "C#8" is 1, "Bo7" is 167. It
// keeps scratch state of the last call and serves one thread at a time.
class ChordRules {
public:
    ChordRules();
    virtual ~ChordRules() = default;

    std::vector<std::shared_ptr<ChordRule>> rules;

private:
    int exactMatch = -1; // place in the last result of findMatches, -1 for none

public:
    // Appends the rules of all chord types in all keys.
    virtual void make();

    // All rules whose leading elements are the pitch classes of `sequence`, in catalogue order. The last one
    // that has no further element is the exact match. The objects are the catalogue's own.
    virtual std::vector<std::shared_ptr<ChordRule>> findMatches(const std::vector<int>& sequence);

    // The place of the exact match in the result of the findMatches just before, -1 for none.
    virtual int getMatchingIndex() const;

    // The element of `values` at that place, null where there is none.
    virtual std::shared_ptr<ChordRule>
    getExactMatch(const std::vector<std::shared_ptr<ChordRule>>& values) const;

private:
    std::vector<int> opattern; // how many notes of the last reduction fell on each pitch class

public:
    // The pitch classes of the notes, ascending, each once. Note numbers beyond 0 to 127 wrap by 127. An
    // empty array is told on the console.
    virtual std::vector<int> reduceToOctave(const std::vector<int>& notes);

    virtual std::vector<int> getOctavePattern() const;

private:
    std::vector<int> keys; // by note number: 0 free, 1 chord tone, 2 taken

public:
    // Maps the notes onto the nearest free chord tones of the rule, all in one direction that is drawn, and
    // returns them ascending. As many elements of the rule count as there are notes. A note above 128 and a
    // negative note are fatal stops, as is a search that finds no chord tone; a note of 128 is left out.
    virtual std::vector<int> transpose(const ChordRule& rule, const std::vector<int>& notes);

    virtual std::vector<int> getCurrentKeys() const;

    // Prints the catalogue to the console, at once.
    virtual void dumpout() const;

private:
    void countOctave(const std::vector<int>& notes);
    void markChordTones(const std::vector<int>& rule, std::size_t count);
    void takeKey(int note, bool upward);
};

} // namespace volvelle
