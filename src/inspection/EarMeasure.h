#pragma once

#include "hearing/Share.h"
#include "inspection/Comebacks.h"
#include "inspection/IdeaTests.h"
#include "phrases/ArrangementTracks.h"
#include "phrases/MIDIClipGenerator.h"

#include <array>
#include <string>
#include <vector>

namespace volvelle {

// Counts over many arrangements what an ear hears in them. Add arrangements, then read.
class EarMeasure {
public:
    static constexpr int beats = arrangementBeats;
    static constexpr int sixteenths = beats * 4; // the grid on which voices and onsets are counted
    static constexpr int crowdedOnsets = 8;      // onsets on one sixteenth that count as a crowd

    void add(MIDIClipGenerator& generator);

    struct Row {
        std::string name;
        double value;
        double least; // the bounds of a library that sounds well
        double most;
    };

    // The whole table, in the order of docs/ear.md. Needs at least one arrangement.
    std::vector<Row> table() const;

private:
    using Notes = std::vector<std::shared_ptr<PhraseEvent>>;

    void addGrid(const Notes& mix);
    void addBass(MIDIClipGenerator& generator, const Notes& mix);
    void addSilence(const Notes& mix);
    void addIdea(MIDIClipGenerator& generator);
    void addPress(MIDIClipGenerator& generator);
    void addIdeaRows(std::vector<Row>& rows) const;

    int arrangements = 0;
    int withoutChord = 0;
    std::array<long, channelCount> notes{};
    std::vector<int> voices; // sounding at each sixteenth
    int crowded = 0;         // sixteenths
    long bassNotes = 0;
    long bassOnRoot = 0;
    long barsWithBass = 0;        // a bass note on the first beat
    long bassDistances = 0;       // notes with another voice above
    double bassDistanceSum = 0.0; // semitones
    long bassBelow = 0;           // notes below all other pitched voices
    Share leadRepeats;            // of the steps
    std::array<int, ideaTests.size()> ideasHolding{};
    int ideasWithout = 0; // a fault
    int ideasWithOne = 0; // fault at most
    Comebacks comebacks;
    double shortestSilence = beats; // beats, of the longest silence in each arrangement
    double longestSilence = 0.0;
};

} // namespace volvelle
