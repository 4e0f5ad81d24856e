#include "scores/PhraseLint.h"

#include "base/Text.h"
#include "hearing/PhraseHearing.h"
#include "scores/PhraseBounds.h"
#include "scores/ScoreOnsets.h"
#include "scores/ScoreText.h"

#include <algorithm>
#include <set>

namespace volvelle {

namespace {

using Faults = std::vector<std::string>;
using BarOnsets = std::map<double, std::set<int>>;

std::string inBody(const Score& score)
{
    return score.bodyLine > 0 ? scores::atLine(score.bodyLine) : "";
}

void lintHarmony(const Score& score, Faults& faults)
{
    std::set<std::string> names;
    for (std::size_t i = 0; i < score.chords.size(); ++i) {
        const ScoreChord& chord = score.chords[i];
        const double end = i + 1 < score.chords.size() ? score.chords[i + 1].position : Score::beats;
        names.insert(chord.name);
        if (end - chord.position > longestChord) {
            faults.push_back(concat(inBody(score), chord.name, " goes on for ", end - chord.position,
                                    " beats, at most ", longestChord));
        }
    }
    if (std::ssize(names) < leastDistinctChords) {
        faults.push_back(concat(inBody(score), counted(names.size(), "distinct chord", "distinct chords"),
                                ", at least ", leastDistinctChords));
    }
}

void lintLevel(const Score& score, Faults& faults)
{
    double sum = 0;
    for (const ScoreNote& note : score.notes) {
        sum += note.velocity;
    }
    const double mean = score.notes.empty() ? 0 : sum / static_cast<double>(score.notes.size());
    if (mean < leastLeadVelocity) {
        faults.push_back(concat(inBody(score), "the mean velocity is ", roundedText(mean), ", at least ",
                                leastLeadVelocity));
    }
}

void lintGround(const Score& score, Faults& faults)
{
    constexpr double third = 2; // beats from the start of the bar
    int grounded = 0;
    for (int bar = 1; bar <= Score::bars; ++bar) {
        const BarOnsets places = scores::onsets(score, bar);
        grounded += places.contains(0) && places.contains(third) ? 1 : 0;
    }
    if (grounded < leastGroundedBars) {
        faults.push_back(concat(inBody(score), counted(grounded, "bar has", "bars have"),
                                " notes on beats 1 and 3, at least ", leastGroundedBars));
    }
}

// Whether two pitch classes stand a fourth or a fifth apart, or a third or a sixth that find a root as well.
bool holdsInterval(const std::set<int>& keys)
{
    constexpr int intervals[] = {4, 5, 7, 8}; // semitones
    return std::ranges::any_of(keys, [&](int key) {
        return std::ranges::any_of(intervals, [&](int interval) {
            return std::ranges::any_of(keys, [&](int other) { return (other - key + 120) % 12 == interval; });
        });
    });
}

void lintIntervals(const Score& score, Faults& faults)
{
    for (int bar = 1; bar <= Score::bars; ++bar) {
        const BarOnsets places = scores::onsets(score, bar);
        std::set<int> keys;
        for (const auto& [position, struck] : places) {
            keys.insert(struck.begin(), struck.end());
        }
        if (places.size() > 1 && !holdsInterval(keys)) {
            faults.push_back(concat(inBody(score), "bar ", bar,
                                    " has no two tones that are 4, 5, 7 or 8 semitones apart"));
        }
    }
}

void lintKicks(const Score& score, Faults& faults)
{
    int kicks = 0;
    std::set<int> bars;
    for (const ScoreNote& note : score.notes) {
        if (isKick(note.number)) {
            ++kicks;
            bars.insert(Score::barAt(note.position));
        }
    }
    if (kicks < leastKicks) {
        faults.push_back(concat(inBody(score), counted(kicks, "kick", "kicks"), ", at least ", leastKicks));
    }
    for (const int bar : {1, 3}) {
        if (kicks >= leastKicks && !bars.contains(bar)) {
            faults.push_back(concat(inBody(score), "bar ", bar, " has no kick"));
        }
    }
}

void lintBars(const Score& score, Faults& faults)
{
    const BarOnsets first = scores::onsets(score, 1);
    for (int bar = 2; bar <= Score::bars; ++bar) {
        if (scores::onsets(score, bar) != first) {
            return;
        }
    }
    faults.push_back(concat(inBody(score), "the four bars are alike"));
}

} // namespace

std::vector<std::string> lintPhrase(const Score& score)
{
    Faults faults;
    if (score.kind == ScoreKind::chordPattern) {
        lintHarmony(score, faults);
        return faults;
    }
    lintBars(score, faults);
    if (score.kind == ScoreKind::lead) {
        lintLevel(score, faults);
    } else if (score.kind == ScoreKind::bass && !score.colour) {
        lintGround(score, faults);
        lintIntervals(score, faults);
    } else if (score.kind == ScoreKind::drums && !score.colour) {
        lintKicks(score, faults);
    }
    return faults;
}

} // namespace volvelle
