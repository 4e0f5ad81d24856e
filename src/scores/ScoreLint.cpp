#include "scores/ScoreLint.h"

#include "base/Text.h"
#include "scores/PitchNames.h"

#include <algorithm>
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

// The bounds of one kind. The keys leave two semitones of room above for phrases that are moved.
struct Bounds {
    std::string_view what;
    int lowest;
    int highest;
    int least;
    int most;
    std::size_t voices;
};

constexpr Bounds bounds[] = {
    {"a chord pattern", 48, 72, 1, 8, 4}, {"a chord phrase", 52, 72, 16, 96, 4}, {"a lead", 62, 82, 8, 64, 2},
    {"a bass", 28, 48, 8, 64, 2},         {"a drum phrase", 27, 87, 24, 160, 5},
};

using Faults = std::vector<std::string>;
using Together = std::map<double, std::vector<const ScoreNote*>>;

std::string inBar(double position)
{
    return concat("bar ", static_cast<int>(position / 4) + 1, ": ");
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

void lintCount(const Score& score, const Bounds& bound, Faults& faults)
{
    const bool pattern = score.kind == ScoreKind::chordPattern;
    const int count = static_cast<int>(pattern ? score.chords.size() : score.notes.size());
    if (count < bound.least || count > bound.most) {
        faults.push_back(concat(bound.what, " has ", bound.least, " to ", bound.most,
                                pattern ? " chords, not " : " notes, not ", count));
    }
}

void lintNote(const Score& score, const Bounds& bound, const ScoreNote& note, Faults& faults)
{
    const auto bar = inBar(note.position);
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
    if (!score.machine && velocities.size() < leastVelocities) {
        faults.push_back(concat("a played phrase has at least 6 velocities, not ", velocities.size()));
    }
}

void lintOverlaps(const Score& score, Faults& faults)
{
    std::map<int, double> soundsTo;
    for (const auto& note : score.notes) {
        const auto [entry, first] = soundsTo.try_emplace(note.number, 0);
        if (!first && note.position < entry->second) {
            faults.push_back(
                concat(inBar(note.position), spelled(score, note.number), " is struck while it sounds"));
        }
        entry->second = std::max(entry->second, note.position + note.duration);
    }
}

void lintVoices(const Score& score, const Bounds& bound, Faults& faults)
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
            faults.push_back(concat(inBar(position), numbers.size(), " voices at beat ", position,
                                    " are more than ", most));
        }
        for (auto voice = numbers.begin(); comping && std::next(voice) != numbers.end(); ++voice) {
            if (*std::next(voice) - *voice < leastStep) {
                faults.push_back(concat(inBar(position), pitchName(*voice), " and ",
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
                concat(inBar(position), kit, " drums of the kit at beat ", position, ", at most 3"));
        }
        if (hands > handsAtOnce) {
            faults.push_back(concat(inBar(position), hands, " hand drums at beat ", position, ", at most 2"));
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
            faults.push_back(
                concat(start == 0 ? "bars 1 and 2" : "bars 3 and 4", " hold no breath of a beat"));
        }
    }
}

void lintChords(const Score& score, Faults& faults)
{
    for (std::size_t i = 0; i + 1 < score.chords.size(); ++i) {
        const auto& chord = score.chords[i];
        const auto& next = score.chords[i + 1];
        if (chord.name == next.name) {
            faults.push_back(concat(inBar(next.position), next.name, " stands twice in a row"));
        }
        for (const auto& note : score.notes) {
            if (note.position == chord.position && note.position + note.duration >= next.position) {
                faults.push_back(
                    concat(inBar(chord.position), chord.name, " does not end before ", next.name));
            }
        }
    }
}

} // namespace

std::vector<std::string> lintScore(const Score& score)
{
    const auto& bound = bounds[static_cast<std::size_t>(score.kind)];
    Faults faults;
    lintCount(score, bound, faults);
    for (const auto& note : score.notes) {
        lintNote(score, bound, note, faults);
    }
    lintVelocities(score, faults);
    lintOverlaps(score, faults);
    if (score.kind == ScoreKind::drums) {
        lintLimbs(score, faults);
    } else {
        lintVoices(score, bound, faults);
    }
    if (score.kind == ScoreKind::lead) {
        lintBreath(score, faults);
    }
    lintChords(score, faults);
    return faults;
}

} // namespace volvelle
