#include "scores/PhraseCompany.h"

#include "base/Text.h"
#include "phrases/ChordFollowing.h"
#include "scores/ChordName.h"
#include "scores/PhraseBounds.h"

#include <algorithm>
#include <bit>
#include <cmath>
#include <map>

namespace volvelle {

namespace {

constexpr int keysInOctave = 12;
constexpr unsigned allTones = (1U << keysInOctave) - 1;

unsigned moved(unsigned tones, int move)
{
    const int up = (move + keysInOctave) % keysInOctave;
    return (tones << up | tones >> (keysInOctave - up)) & allTones;
}

int sixteenths(double beats)
{
    return static_cast<int>(std::round(beats / Score::sixteenth));
}

// The root under which a chord is found: the name's own may be another one once it is moved.
class Roots {
public:
    int of(unsigned tones)
    {
        const auto [root, isNew] = known.try_emplace(tones, 0);
        if (isNew) {
            const auto chord = scores::chordNamed(scores::chordDetected(tones));
            root->second = chord ? chord->root : 0;
        }
        return root->second;
    }

private:
    std::map<unsigned, int> known;
};

bool follows(ScoreKind kind)
{
    return kind == ScoreKind::chords || kind == ScoreKind::lead || kind == ScoreKind::bass;
}

void holdMost(const Share& share, double most, std::string_view what, std::vector<std::string>& faults)
{
    if (share.value() > most) {
        faults.push_back(concat(what, percentText(share.value()), ", at most ", percentText(most)));
    }
}

void holdLeast(const Share& share, double least, std::string_view what, std::vector<std::string>& faults)
{
    if (share.whole > 0 && share.value() < least) {
        faults.push_back(concat(what, percentText(share.value()), ", at least ", percentText(least)));
    }
}

} // namespace

void PhraseCompany::addPattern(const Score& pattern)
{
    for (int move = -farthestMove; move <= farthestMove; ++move) {
        harmonies.emplace_back(heardChords(pattern, move));
    }
}

void PhraseCompany::addDrums(const Score& drums)
{
    kicks.push_back(kicksOf(heardNotes(drums)));
}

HeardNotes heardNotes(const Score& score)
{
    HeardNotes notes;
    notes.reserve(score.notes.size());
    for (const ScoreNote& note : score.notes) {
        notes.push_back({sixteenths(note.position), sixteenths(note.duration), note.number, note.velocity});
    }
    std::ranges::stable_sort(notes, {}, &HeardNote::position);
    return notes;
}

std::vector<HeardChord> heardChords(const Score& pattern, int move)
{
    static thread_local Roots roots;
    std::vector<HeardChord> chords;
    for (const ScoreChord& chord : pattern.chords) {
        if (const auto named = scores::chordNamed(chord.name)) {
            const unsigned tones = moved(named->tones(), move);
            chords.push_back({sixteenths(chord.position), tones, roots.of(tones)});
        }
    }
    return chords;
}

PhraseMeasure measured(const Score& score, const PhraseCompany& company)
{
    PhraseMeasure measure;
    const HeardNotes notes = heardNotes(score);
    for (const Harmony& harmony : company.harmonies) {
        const HeardNotes heard = followed(notes, harmony);
        measure.outside += {std::popcount(outsideChords(heard, harmony)), Harmony::sixteenths};
        if (score.kind == ScoreKind::bass) {
            measure.met += changesMet(heard, harmony);
            measure.roots += rootsSounded(heard, harmony);
        } else if (score.kind == ScoreKind::lead) {
            measure.repeats += keyRepeats(heard);
        }
    }
    if (score.kind == ScoreKind::bass) {
        for (const Onsets kicks : company.kicks) {
            measure.kicks += onKicks(notes, kicks);
        }
    }
    return measure;
}

std::vector<std::string> lintMeasure(const Score& score, const PhraseCompany& company)
{
    std::vector<std::string> faults;
    if (!follows(score.kind)) {
        return faults;
    }
    const PhraseMeasure measure = measured(score, company);
    holdMost(measure.outside, mostOutside, "a tone sounds outside the chord for ", faults);
    holdMost(measure.repeats, mostRepeats, "of the steps that are heard, the key is repeated in ", faults);
    if (!score.colour) {
        holdLeast(measure.met, leastMet, "of the chord changes the bass meets ", faults);
        holdLeast(measure.roots, leastRoots, "of the chords the bass sounds the root in ", faults);
        holdLeast(measure.kicks, leastOnKicks, "of the notes a kick lies under ", faults);
    }
    return faults;
}

std::vector<Onsets> placesOf(const Score& score)
{
    const HeardNotes notes = heardNotes(score);
    return score.kind == ScoreKind::drums ? std::vector<Onsets>{kicksOf(notes), snaresOf(notes)}
                                          : std::vector<Onsets>{onsetsOf(notes)};
}

bool areOnePattern(const Score& one, const Score& other)
{
    const auto isSame = [](const HeardChord& chord, const HeardChord& beside) {
        return chord.position == beside.position && chord.tones == beside.tones;
    };
    const auto chords = heardChords(one, 0);
    for (int move = 0; move < keysInOctave; ++move) {
        if (std::ranges::equal(chords, heardChords(other, move), isSame)) {
            return true;
        }
    }
    return false;
}

} // namespace volvelle
