#include "inspection/EarMeasure.h"

#include "base/Text.h"
#include "hearing/PhraseHearing.h"

#include <algorithm>
#include <cmath>
#include <numeric>

namespace volvelle {

namespace {

constexpr double grid = 0.25; // beats

// The bounds of the notes per beat of those channels that sound.
struct Density {
    int channel;
    double least;
    double most;
};

constexpr std::array densities{Density{chordChannel, 0.3, 2.5}, Density{chordPhraseChannel, 1.0, 6.0},
                               Density{leadChannel, 0.5, 4.0},  Density{bassChannel, 0.5, 4.0},
                               Density{drumChannel, 1.5, 10.0}, Density{polyMeterChannel, 1.0, 4.0}};

bool soundsAt(const PhraseEvent& note, double position)
{
    return note.position <= position && position < note.position + note.duration;
}

double share(long part, long whole)
{
    return Share{part, whole}.value();
}

const ChordEvent* chordAt(const std::vector<std::shared_ptr<ChordEvent>>& chords, double position)
{
    const ChordEvent* sounding = nullptr;
    for (const auto& chord : chords) {
        if (chord->position <= position) {
            sounding = chord.get();
        }
    }
    return sounding;
}

} // namespace

void EarMeasure::add(MIDIClipGenerator& generator)
{
    const auto mix = generator.getPhrase(-1);
    ++arrangements;
    withoutChord += generator.getChords().empty() ? 1 : 0;
    for (const auto& note : mix) {
        ++notes.at(note->channel);
    }
    addGrid(mix);
    addBass(generator, mix);
    leadRepeats += keyRepeats(heardNotes(generator, leadChannel));
    addSilence(mix);
    addIdea(generator);
    addPress(generator);
}

void EarMeasure::addIdea(MIDIClipGenerator& generator)
{
    const IdeaResult result = testIdea(generator);
    for (std::size_t i = 0; i < result.size(); ++i) {
        ideasHolding.at(i) += result.at(i) ? 1 : 0;
    }
    const auto faults = std::ranges::count(result, false);
    ideasWithout += faults == 0 ? 1 : 0;
    ideasWithOne += faults <= 1 ? 1 : 0;
}

void EarMeasure::addPress(MIDIClipGenerator& generator)
{
    for (const ArrangementTrack& track : arrangementTracks) {
        if (const auto& file = track.phraseIn(*generator.phraseMixer).currentURL) {
            comebacks.add(*file);
        }
    }
}

void EarMeasure::addGrid(const Notes& mix)
{
    for (int step = 0; step < sixteenths; ++step) {
        const double position = step * grid;
        int sounding = 0;
        int onsets = 0;
        for (const auto& note : mix) {
            sounding += note->channel != drumChannel && soundsAt(*note, position) ? 1 : 0;
            onsets += note->position == position ? 1 : 0;
        }
        voices.push_back(sounding);
        crowded += onsets >= crowdedOnsets ? 1 : 0;
    }
}

void EarMeasure::addBass(MIDIClipGenerator& generator, const Notes& mix)
{
    const auto chords = generator.getChords();
    std::array<bool, beats / 4> hasBass{};
    for (const auto& bass : generator.getPhrase(bassChannel)) {
        ++bassNotes;
        const ChordEvent* chord = chordAt(chords, bass->position);
        bassOnRoot += chord != nullptr && bass->number % 12 == chord->nrule->rule.front() ? 1 : 0;
        const double bar = bass->position / 4.0;
        if (bar == std::floor(bar) && bass->position < beats) {
            hasBass.at(static_cast<std::size_t>(bar)) = true;
        }
        int lowest = 128;
        for (const auto& note : mix) {
            if (note->channel != bassChannel && note->channel != drumChannel &&
                soundsAt(*note, bass->position)) {
                lowest = std::min(lowest, int{note->number});
            }
        }
        if (lowest < 128) {
            ++bassDistances;
            bassDistanceSum += lowest - bass->number;
        }
        bassBelow += bass->number < lowest ? 1 : 0;
    }
    barsWithBass += std::ranges::count(hasBass, true);
}

void EarMeasure::addSilence(const Notes& mix)
{
    double longest = 0.0;
    double heardUntil = 0.0;
    for (const auto& note : mix) {
        if (note->channel == chordChannel) {
            continue;
        }
        longest = std::max(longest, note->position - heardUntil);
        heardUntil = std::max(heardUntil, note->position + note->duration);
    }
    longest = std::max(longest, beats - heardUntil);
    shortestSilence = std::min(shortestSilence, longest);
    longestSilence = std::max(longestSilence, longest);
}

std::vector<EarMeasure::Row> EarMeasure::table() const
{
    const double wholeBeats = static_cast<double>(arrangements) * beats;
    const auto perBeat = [&](int channel) {
        return static_cast<double>(notes.at(static_cast<std::size_t>(channel))) / wholeBeats;
    };
    auto sorted = voices;
    std::ranges::sort(sorted);
    const double voiceSum = std::accumulate(sorted.begin(), sorted.end(), 0.0);
    const auto counted = static_cast<long>(sorted.size());
    const long allNotes = std::accumulate(notes.begin(), notes.end(), 0L);
    std::vector<Row> rows;
    rows.reserve(densities.size() + 12 + ideaTests.size() + 3);
    for (const auto& [channel, least, most] : densities) {
        rows.push_back({concat("notes per beat, channel ", channel + 1), perBeat(channel), least, most});
    }
    rows.push_back({"notes per beat, all", static_cast<double>(allNotes) / wholeBeats, 6.0, 22.0});
    rows.push_back({"voices at once without drums, mean", voiceSum / static_cast<double>(counted), 3.0, 9.0});
    rows.push_back({"voices at once without drums, 95th percentile",
                    static_cast<double>(sorted[static_cast<std::size_t>(counted * 95 / 100)]), 4.0, 13.0});
    rows.push_back({"share of sixteenths with 8 or more onsets", share(crowded, counted), 0.0, 0.15});
    rows.push_back({"semitones from bass to the lowest other voice, mean",
                    bassDistances == 0 ? 0.0 : bassDistanceSum / static_cast<double>(bassDistances), 7.0,
                    40.0});
    rows.push_back({"share of bass notes on a root", share(bassOnRoot, bassNotes), 0.25, 0.8});
    rows.push_back(
        {"share of bass notes below all other pitched voices", share(bassBelow, bassNotes), 0.95, 1.0});
    rows.push_back(
        {"share of first beats with a bass note", share(barsWithBass, arrangements * 4L), 0.55, 1.0});
    rows.push_back({"share of lead steps that repeat the key", leadRepeats.value(), 0.0, 0.25});
    rows.push_back({"share of arrangements without a chord", share(withoutChord, arrangements), 0.0, 0.0});
    rows.push_back(
        {"longest silence in an arrangement without chords in beats, least", shortestSilence, 0.0, 4.0});
    rows.push_back(
        {"longest silence in an arrangement without chords in beats, most", longestSilence, 0.0, 8.0});
    addIdeaRows(rows);
    return rows;
}

void EarMeasure::addIdeaRows(std::vector<Row>& rows) const
{
    for (std::size_t i = 0; i < ideaTests.size(); ++i) {
        rows.push_back({concat("share of ideas: ", ideaTests.at(i).name),
                        share(ideasHolding.at(i), arrangements), ideaTests.at(i).least, 1.0});
    }
    rows.push_back({"share of ideas without a fault", share(ideasWithout, arrangements), 0.75, 1.0});
    rows.push_back({"share of ideas with one fault at most", share(ideasWithOne, arrangements), 0.94, 1.0});
    rows.push_back({"press at which a phrase comes back, median",
                    static_cast<double>(comebacks.medianPress()), 7.0, double{Comebacks::mostPresses}});
}

} // namespace volvelle
