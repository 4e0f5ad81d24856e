#include "scores/ScoreLint.h"

#include "base/Text.h"
#include "scores/PhraseBounds.h"
#include "scores/PitchNames.h"
#include "scores/ScoreOnsets.h"
#include "scores/ScoreText.h"

#include <algorithm>
#include <cstdlib>
#include <map>
#include <set>

namespace volvelle {

namespace {

using scores::pitchName;

constexpr int softest = 15;
constexpr int loudest = 120;
constexpr std::size_t leastVelocities = 6;
constexpr int kitAtOnce = 3;
constexpr int handsAtOnce = 2;
constexpr double breath = 1; // beats

using Faults = std::vector<std::string>;
using Together = std::map<double, std::vector<const ScoreNote*>>;

std::string inBar(int line, double position)
{
    const int bar = Score::barAt(position);
    return line > 0 ? scores::atBar(line, bar) : concat("bar ", bar, ": ");
}

std::string inBar(const ScoreNote& note)
{
    return inBar(note.line, note.position);
}

// The place of what sounds first from a position on.
std::string inBarFrom(const Score& score, double position)
{
    const auto first =
        std::ranges::find_if(score.notes, [&](auto& note) { return note.position >= position; });
    return inBar(first == score.notes.end() ? 0 : first->line, position);
}

std::string inBody(const Score& score)
{
    return score.bodyLine > 0 ? scores::atLine(score.bodyLine) : "";
}

std::string spelled(const Score& score, int number)
{
    return score.kind == ScoreKind::drums ? concat("key ", number) : pitchName(number);
}

Together byPosition(const Score& score)
{
    Together together;
    for (const auto& note : score.notes) {
        together[note.position].push_back(&note);
    }
    return together;
}

void lintCount(const Score& score, const PhraseBounds& bound, Faults& faults)
{
    const bool pattern = score.kind == ScoreKind::chordPattern;
    const int count = static_cast<int>(pattern ? score.chords.size() : score.notes.size());
    if (count < bound.least || count > bound.most) {
        faults.push_back(concat(inBody(score), bound.what, " has ", bound.least, " to ", bound.most,
                                pattern ? " chords, not " : " notes, not ", count));
    }
}

void lintNote(const Score& score, const PhraseBounds& bound, const ScoreNote& note, Faults& faults)
{
    const auto bar = inBar(note);
    if (note.position < 0 || note.position >= Score::beats) {
        faults.push_back(concat("a note begins at beat ", note.position, ", outside 0 to 16"));
        return;
    }
    if (note.position + note.duration > Score::beats) {
        faults.push_back(concat(bar, "a note ends behind beat 16"));
    }
    if (note.duration < Score::sixteenth - Score::gap) {
        faults.push_back(concat(bar, "a note is shorter than a sixteenth"));
    }
    if (note.number < bound.lowest || note.number > bound.highest) {
        faults.push_back(concat(bar, spelled(score, note.number), " lies outside ",
                                spelled(score, bound.lowest), " to ", spelled(score, bound.highest)));
    }
    if (note.velocity < softest || note.velocity > loudest) {
        faults.push_back(
            concat(bar, "the velocity ", note.velocity, " lies outside ", softest, " to ", loudest));
    }
}

void lintVelocities(const Score& score, Faults& faults)
{
    std::set<int> velocities;
    for (const auto& note : score.notes) {
        velocities.insert(note.velocity);
    }
    if (score.machine && velocities.size() >= leastVelocities) {
        faults.push_back(concat(inBody(score), "the phrase has ", velocities.size(),
                                " velocities: leave \"machine: yes\" out, it stands for fewer than 6"));
    }
    if (!score.machine && velocities.size() < leastVelocities) {
        faults.push_back(concat(inBody(score), "a played phrase has at least 6 velocities, not ",
                                velocities.size(), ": vary them, or write \"machine: yes\" above"));
    }
}

void lintOverlaps(const Score& score, Faults& faults)
{
    std::map<int, double> soundsTo;
    for (const auto& note : score.notes) {
        const auto [entry, first] = soundsTo.try_emplace(note.number, 0);
        if (!first && note.position < entry->second) {
            faults.push_back(concat(inBar(note), spelled(score, note.number), " is struck while it sounds"));
        }
        entry->second = std::max(entry->second, note.position + note.duration);
    }
}

void lintVoices(const Score& score, const PhraseBounds& bound, Faults& faults)
{
    constexpr std::size_t closeVoices = 3;
    constexpr int wideSpan = 12;
    constexpr int leastStep = 3;
    for (const auto& [position, notes] : byPosition(score)) {
        std::set<int> numbers;
        for (const auto* note : notes) {
            numbers.insert(note->number);
        }
        const bool wide = *numbers.rbegin() - *numbers.begin() >= wideSpan;
        const bool comping = score.kind == ScoreKind::chords;
        const auto most = comping && !wide ? closeVoices : bound.voices;
        if (numbers.size() > most) {
            faults.push_back(concat(inBar(*notes.front()), numbers.size(), " voices at beat ", position,
                                    " are more than ", most));
        }
        for (auto voice = numbers.begin(); comping && std::next(voice) != numbers.end(); ++voice) {
            if (*std::next(voice) - *voice < leastStep) {
                faults.push_back(concat(inBar(*notes.front()), pitchName(*voice), " and ",
                                        pitchName(*std::next(voice)), " stand closer than 3 semitones"));
            }
        }
    }
}

bool isHandPercussion(int key)
{
    constexpr int kitFrom = 35;
    constexpr int kitTo = 59;
    constexpr int inKitRange[] = {39, 54, 56, 58}; // clap, tambourine, cowbell, vibraslap
    return key < kitFrom || key > kitTo || std::ranges::find(inKitRange, key) != std::end(inKitRange);
}

void lintLimbs(const Score& score, Faults& faults)
{
    for (const auto& [position, notes] : byPosition(score)) {
        const auto hands =
            std::ranges::count_if(notes, [](auto* note) { return isHandPercussion(note->number); });
        const auto kit = std::ssize(notes) - hands;
        if (kit > kitAtOnce) {
            faults.push_back(
                concat(inBar(*notes.front()), kit, " drums of the kit at beat ", position, ", at most 3"));
        }
        if (hands > handsAtOnce) {
            faults.push_back(
                concat(inBar(*notes.front()), hands, " hand drums at beat ", position, ", at most 2"));
        }
    }
}

void lintBreath(const Score& score, Faults& faults)
{
    constexpr double half = Score::beats / 2;
    for (const double start : {0.0, half}) {
        double silentFrom = start;
        double longest = 0;
        for (const auto& note : score.notes) {
            if (note.position >= start && note.position < start + half) {
                longest = std::max(longest, note.position - silentFrom);
            }
            if (note.position < start + half) {
                silentFrom = std::max(silentFrom, note.position + note.duration);
            }
        }
        longest = std::max(longest, start + half - silentFrom);
        if (longest < breath) {
            faults.push_back(concat(inBody(score), start == 0 ? "bars 1 and 2" : "bars 3 and 4",
                                    " hold no breath of a beat"));
        }
    }
}

void lintHighest(const Score& score, Faults& faults)
{
    const auto highest = std::ranges::max_element(score.notes, {}, &ScoreNote::number);
    if (highest == score.notes.end()) {
        return;
    }
    const auto again = std::ranges::find(highest + 1, score.notes.end(), highest->number, &ScoreNote::number);
    if (again != score.notes.end()) {
        faults.push_back(concat(inBar(*again), spelled(score, highest->number),
                                " is reached again: a lead has one highest point"));
    }
}

void lintSteps(const Score& score, Faults& faults)
{
    constexpr int widest = 2;
    constexpr int most = 2;
    int small = 0;
    for (std::size_t i = 1; i < score.notes.size(); ++i) {
        const int step = std::abs(score.notes[i].number - score.notes[i - 1].number);
        small += step > 0 && step <= widest ? 1 : 0;
        if (step > 0 && step <= widest && small == most + 1) {
            faults.push_back(concat(inBar(score.notes[i]), "a third step of one or two semitones, at most ",
                                    most, ": leap by three or more"));
        }
    }
}

void lintTurn(const Score& score, Faults& faults)
{
    const auto last = scores::onsets(score, Score::bars);
    for (int bar = 1; bar < Score::bars; ++bar) {
        if (scores::onsets(score, bar) == last) {
            faults.push_back(
                concat(inBody(score), "bar 4 is struck as bar ", bar, " is: drums turn in the fourth bar"));
            return;
        }
    }
}

void lintChords(const Score& score, Faults& faults)
{
    for (std::size_t i = 0; i + 1 < score.chords.size(); ++i) {
        const auto& chord = score.chords[i];
        const auto& next = score.chords[i + 1];
        if (chord.name == next.name) {
            faults.push_back(concat(inBarFrom(score, next.position), next.name, " stands twice in a row"));
        }
        for (const auto& note : score.notes) {
            if (note.position == chord.position && note.position + note.duration >= next.position) {
                faults.push_back(concat(inBar(note), chord.name, " does not end before ", next.name));
            }
        }
    }
}

} // namespace

std::vector<std::string> lintScore(const Score& score)
{
    const PhraseBounds& bound = phraseBounds(score.kind);
    Faults faults;
    lintCount(score, bound, faults);
    for (const auto& note : score.notes) {
        lintNote(score, bound, note, faults);
    }
    if (score.kind != ScoreKind::chordPattern) {
        lintVelocities(score, faults);
    }
    lintOverlaps(score, faults);
    if (score.kind == ScoreKind::drums) {
        lintLimbs(score, faults);
        lintTurn(score, faults);
    } else {
        lintVoices(score, bound, faults);
    }
    if (score.kind == ScoreKind::lead) {
        lintBreath(score, faults);
        lintHighest(score, faults);
    }
    if (score.kind == ScoreKind::lead || score.kind == ScoreKind::bass) {
        lintSteps(score, faults);
    }
    lintChords(score, faults);
    return faults;
}

} // namespace volvelle
