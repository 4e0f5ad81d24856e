#pragma once

#include "phrases/ArrangementTracks.h"
#include "phrases/MIDIPhrases.h"

#include <filesystem>
#include <memory>
#include <optional>
#include <string>
#include <vector>

namespace volvelle {

// Turns one request into one finished arrangement: picks a random phrase file for each track, lets the
// pitched tracks follow the chord track, and mixes. The channels in use stand in ArrangementTracks.h.
//
// Without a mixer, that is before the first arrangement, these are fatal stops: makePhrase for a channel in
// use, getPhrase, changeChords, getChords, all operations on steps, and makeArrangementLong(0). A broken
// phrase library is one, too. Used by one thread at a time.
class MIDIClipGenerator {
public:
    MIDIClipGenerator();
    virtual ~MIDIClipGenerator();
    MIDIClipGenerator(const MIDIClipGenerator&) = delete;
    MIDIClipGenerator& operator=(const MIDIClipGenerator&) = delete;

    std::shared_ptr<MIDIPhraseMixer> phraseMixer; // of the last arrangement, null before

    // A new arrangement of sixteen beats with a new mixer. An empty one has no events, and reads no file.
    virtual std::shared_ptr<MIDISequence16> makeArrangement(bool empty = false);

    // `count` arrangements one after the other, each in a block of sixteen beats. The mixer then holds the
    // whole sequence, its tracks the last block. A negative count is a fatal stop.
    virtual std::shared_ptr<MIDISequence16> makeArrangementLong(int count);

    // Replaces the phrase of one channel; -1 the whole arrangement, 0 the chords, which the others then
    // follow. Only these two refresh the mix. Other channels change nothing; `instance` is not used.
    virtual void makePhrase(int channel, int instance);

    // The events of a channel's track, -1 the mix; none for a channel that is not in use. The list is a copy,
    // its events are the track's own.
    virtual PhraseEvents getPhrase(int channel);

    // The label of a channel; never fails.
    virtual std::string getName(int channel);

    // Takes over edited notes of the chords, lets the others follow, and mixes.
    virtual void changeChords();

    virtual std::vector<std::shared_ptr<ChordEvent>> getChords();

    // MARK: Steps, for polyMeterChannel and polyRhythmChannel; elsewhere empty results and no effect

    virtual std::vector<std::shared_ptr<PolyMeterStepEvent>> getPolyMeterSteps(int channel);
    // Cuts or lengthens the cycle to 1 to 16 steps; the track follows the chords anew, the mix stays.
    virtual void adjustPolyMeterSteps(int channel, int number);
    virtual std::shared_ptr<PolyMeterStepEvent> getPolyMeterStep(int channel, int number);
    virtual void setPolyMeterStep(const std::shared_ptr<PolyMeterStepEvent>& step, int channel, int number);

    virtual std::vector<std::shared_ptr<PolyRhythmStepEvent>> getPolyRhythmSteps(int channel, int instance);
    // An instance outside 0 to 7 is a fatal stop here; in the next two 8 is one, and all others are none.
    // Changes refresh the mix.
    virtual void adjustPolyRhythmSteps(int channel, int instance, int number);
    virtual std::shared_ptr<PolyRhythmStepEvent> getPolyRhythmStep(int channel, int instance, int number);
    virtual void setPolyRhythmStep(const std::shared_ptr<PolyRhythmStepEvent>& step, int channel,
                                   int instance, int number);

    // Always empty.
    virtual std::vector<std::shared_ptr<RandomStepEvent>> getRandomSteps(int channel);

    // Saves the arrangement as "Phrases/output/phraseMixer_NNN.mid" below the documents folder, which must
    // exist.
    void saveArrangement(MIDIPhraseMixer& arrangement, int number);

    // Does nothing.
    void save(int channel, const std::string& name);

protected:
    std::filesystem::path loadRandomFileAt(const std::string& path);
    int countFiles(const std::vector<std::string>& files, const std::string& at);
    std::string formatNumber(int number);

private:
    MIDIPhraseMixer& mixer();
    void fill(const ArrangementTrack& track, const std::optional<std::filesystem::path>& resources);
    void followChords();
    void rebuildPolyMeter();
    void rebuildPolyRhythm();
};

} // namespace volvelle
