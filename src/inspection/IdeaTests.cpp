#include "inspection/IdeaTests.h"

#include "hearing/HearingBounds.h"
#include "hearing/PhraseHearing.h"

#include <algorithm>
#include <bit>
#include <cmath>
#include <set>

namespace volvelle {

namespace {

constexpr double dense = 1.5; // notes per beat
constexpr double near = 5;    // of a mean velocity

bool isLeast(const Share& share, double least)
{
    return share.whole == 0 || share.value() >= least;
}

double meanVelocity(const HeardNotes& notes)
{
    double sum = 0;
    for (const HeardNote& note : notes) {
        sum += note.velocity;
    }
    return notes.empty() ? 0 : sum / static_cast<double>(notes.size());
}

bool isCovered(const HeardNotes& lead, const HeardNotes& line)
{
    const double density = static_cast<double>(line.size()) / arrangementBeats;
    return density >= dense && !lead.empty() && std::abs(meanVelocity(lead) - meanVelocity(line)) <= near;
}

bool moves(const Harmony& harmony)
{
    std::set<unsigned> distinct;
    for (std::size_t i = 0; i < harmony.chords.size(); ++i) {
        distinct.insert(harmony.chords[i].tones);
        if (harmony.endOf(i) - harmony.chords[i].position > longestChord * 4) {
            return false;
        }
    }
    return std::ssize(distinct) >= leastDistinctChords;
}

} // namespace

HeardNotes heardNotes(MIDIClipGenerator& generator, int channel)
{
    constexpr double slack = 1e-9; // sixteenths
    HeardNotes notes;
    for (const auto& event : generator.getPhrase(channel)) {
        if (event->type == PhraseEvent::noteOn) {
            notes.push_back({static_cast<int>(std::lround(event->position * 4)),
                             static_cast<int>(std::ceil(event->duration * 4 - slack)), event->number,
                             event->value});
        }
    }
    std::ranges::stable_sort(notes, {}, &HeardNote::position);
    return notes;
}

Harmony heardHarmony(MIDIClipGenerator& generator)
{
    std::vector<HeardChord> chords;
    for (const auto& chord : generator.getChords()) {
        HeardChord heard{static_cast<int>(std::lround(chord->position * 4)), 0, 0};
        for (const int tone : chord->nrule->rule) {
            heard.tones |= 1U << tone;
        }
        heard.root = chord->nrule->rule.empty() ? 0 : chord->nrule->rule.front();
        chords.push_back(heard);
    }
    return Harmony(chords);
}

IdeaResult testIdea(MIDIClipGenerator& generator)
{
    const Harmony harmony = heardHarmony(generator);
    const HeardNotes lead = heardNotes(generator, leadChannel);
    const HeardNotes bass = heardNotes(generator, bassChannel);
    const HeardNotes drums = heardNotes(generator, drumChannel);
    const HeardNotes line = heardNotes(generator, polyMeterChannel);
    const Onsets outside = outsideChords(heardNotes(generator, chordPhraseChannel), harmony) |
                           outsideChords(lead, harmony) | outsideChords(bass, harmony) |
                           outsideChords(line, harmony);
    const auto kicks = std::ranges::count_if(drums, [](const HeardNote& note) { return isKick(note.key); });
    return {std::popcount(outside) <= mostOutside * Harmony::sixteenths,
            isLeast(changesMet(bass, harmony), leastMet),
            isLeast(rootsSounded(bass, harmony), leastRoots),
            isLeast(onKicks(bass, kicksOf(drums)), leastOnKicks),
            !isCovered(lead, line),
            moves(harmony),
            kicks >= leastKicks,
            keyRepeats(lead).value() <= mostRepeats};
}

} // namespace volvelle
