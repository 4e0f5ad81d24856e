#pragma once

#include "phrases/ChordEvent.h"
#include "phrases/MIDIPhrase.h"
#include "theory/ChordRules.h"

#include <memory>
#include <vector>

namespace volvelle {

// The phrase track that understands harmony: it finds out which chord sounds at which position and plays the
// chords found, laid out anew, in place of the notes that it loaded. The mixer's chord track is the master
// that the other tracks follow. Made by make(). Used by one thread at a time, all objects together.
class MIDIChordPhrase : public MIDIPhrase {
public:
    static std::shared_ptr<MIDIChordPhrase> make();
    ~MIDIChordPhrase() override;

    static constexpr double DONOTOVERLAPP = 0.0001; // beats left free between two chords
    static constexpr double MINDURATION = 0.03125;  // beats, the shortest chord note

    bool isMasterTrack = false;
    std::vector<std::shared_ptr<ChordEvent>> chords; // in the order of detection

    // The one catalogue of the process, with its scratch state.
    static ChordRules& chordRules();

    void savePhrase(const std::filesystem::path& url) override;

    // Loads as a phrase does, then buildChords().
    void loadPhrase(const std::filesystem::path& url, int transpose) override;

    // Rebuilds `chords` from loadedEvents, and generatedEvents from the chords.
    virtual void buildChords();

private:
    virtual void createChordRule(const std::vector<int>& sounding, const std::shared_ptr<PhraseEvent>& event);

public:
    // The rule that fits the chord's own notes, which becomes the chord's. Where none fits exactly its names
    // begin with "(?)", where none fits at all it is "NO CHORD" with the notes' pitch classes. Never null.
    virtual std::shared_ptr<ChordRule> findChordRule(ChordEvent& chord);

protected:
    virtual void addChord(const std::shared_ptr<ChordEvent>& chord);
    virtual void reduceChords();

public:
    // Rebuilds generatedEvents: one block chord for each chord, up to the next one. On a master track the
    // events become the chord's notes; elsewhere the chord's notes give the durations.
    virtual void regenerateEvents();

    // Rebuilds loadedEvents and generatedEvents from the chords' notes, the same objects, and renews the
    // rules.
    virtual void updateChordEvents();

    // Maps the chords of `track` onto the chords of this master track.
    virtual void transposeTrackChords(MIDIChordPhrase& track);

protected:
    virtual void transposeChords(double from, double to, MIDIChordPhrase& track, int index);

public:
    // The chords' positions, closed by the end of the phrase; sets each chord's duration.
    virtual std::vector<double> getChordPositions();

protected:
    MIDIChordPhrase();

    void keepChordNote(ChordEvent& chord, const std::shared_ptr<PhraseEvent>& note, std::size_t place,
                       const std::vector<double>& positions);

private:
    bool ascends = false; // whether the chords being built stand by position
};

} // namespace volvelle
