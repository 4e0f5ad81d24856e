#pragma once

#include "phrases/ArrangementTracks.h"
#include "phrases/PhraseEvent.h"
#include "phrases/PolyMetricStepGenerator.h"
#include "phrases/PolyRhytmicStepGenerator.h"
#include "phrases/RandomStepGenerator.h"
#include "sequence/MIDISequence16.h"
#include "sequence/SequenceFoundDelegate.h"
#include "theory/ChordRule.h"

#include <cstdint>
#include <filesystem>
#include <memory>
#include <optional>
#include <string>
#include <vector>

namespace volvelle {

class MIDIChordPhrase;

// One track of an arrangement: a phrase of at most sixteen beats, read from a file or made of steps, and its
// playable form. Listens to the sequence that it reads, and so is made by make(). Used by one thread at a
// time.
class MIDIPhrase : public SequenceFoundDelegate, public std::enable_shared_from_this<MIDIPhrase> {
public:
    static std::shared_ptr<MIDIPhrase> make();
    ~MIDIPhrase() override;
    MIDIPhrase(const MIDIPhrase&) = delete;
    MIDIPhrase& operator=(const MIDIPhrase&) = delete;

    static constexpr int MAXBEATLENGTH = arrangementBeats;

    std::shared_ptr<MIDISequence16> sequence; // the last file read, null before
    PhraseEvents loadedEvents;    // what the file held or the steps gave, or the quantized form of it
    PhraseEvents generatedEvents; // the playable form; of a chord track whose notes were edited the same
                                  // objects as in loadedEvents, else others
    std::shared_ptr<PolyMetricStepGenerator> polyMetricStepGenerator;
    std::shared_ptr<PolyRhythmicStepGenerator> polyRhythmicStepGenerator;
    std::shared_ptr<RandomStepGenerator> randomStepGenerator;
    std::optional<std::filesystem::path> currentURL; // the file last loaded
    std::vector<std::string> loadWarnings;           // what was odd in that file, in plain sentences
    int currentLength = 0;                           // whole beats
    int currentID = 0;                               // the next id while loading
    int channel = 0;                                 // that the notes of this track get
    std::uint8_t baseC = 60;                         // the key of pitch class 0, in chords alone
    bool quantizesEvents = true;                     // whether detected chords are put on the grid
    double quantizePrecision = 4.0;                  // steps per beat of that grid

    // Saves the file as read, not the generated events; nothing before the first load.
    virtual void savePhrase(const std::filesystem::path& url);

    // Reads a file into loadedEvents, moved by `transpose` semitones, and leaves generatedEvents alone. Notes
    // and controllers past beat 16 are left out. A number that is moved above 127 falls by 127, one below 0
    // rises by 127; one that then still is outside 0 to 255 is a fatal stop. A missing file, or
    // what is none, is reported and changes nothing.
    virtual void loadPhrase(const std::filesystem::path& url, int transpose);

    // loadPhrase, then the notes on the grid of sixteenths, then generateEvents.
    virtual void loadPhrase2(const std::filesystem::path& url, int transpose);

    // Copies the notes of loadedEvents.
    virtual void generateEvents();

    // Puts the notes of loadedEvents on a grid of 1/division beat and shortens them by a hundredth; drops all
    // other events.
    virtual void quantizeEvents(double division = 4.0);

    // Rebuilds generatedEvents: each loaded note moves up to the next free tone of the chord that sounds at
    // its position. Notes before the first chord and at beat 16 or later are left out.
    virtual void transposeTrackNotes(MIDIChordPhrase& chordTrack);

protected:
    virtual void transposeNotesToChord(MIDIChordPhrase& chordTrack, double from, double to, int index);
    virtual bool transpose(const ChordRule& rule, std::uint8_t note, double position);
    virtual bool hasNoteAtPosition(const PhraseEvents& notes, std::uint8_t note, double position);

public:
    // Draws a new cycle and lays it over `steps` sixteenths, until it holds a note; returns loadedEvents. A
    // `steps` of 0 can never give a note and is a fatal stop, as are a negative one, a channel outside 0 to
    // 255, and a step whose note, 60 above what it tells and folded by 127 like a loaded one, is outside 0 to
    // 255.
    virtual PhraseEvents generateRandomPhrase_PolyMetric(int channel, int steps);

    // The same from the present cycle; a cycle without a note is replaced by a new one.
    virtual void updateEvents_PolyMeter(int steps = polyMeterSteps);

    // Draws one instance, all for a negative one, and returns the new loadedEvents.
    virtual PhraseEvents generateRandomPhrase_PolyRhythmic(int instance);

    // The sounding steps of all instances in each of four bars, by position.
    virtual void updateEvents_PolyRhythm();

    // Gives nothing.
    virtual PhraseEvents generateRandomPhrase(int channel);

    void foundNoteEvent(const std::shared_ptr<MidiNoteEvent>& event) override;
    void foundControllerEvent(const std::shared_ptr<MidiControllerEvent>& event) override;
    void foundMetaMarkerEvent(const std::shared_ptr<MetaMarkerEvent>& event) override;

protected:
    MIDIPhrase();

    // Keeps a sentence about the file that is loaded, and prints it.
    void warn(std::string sentence);
};

} // namespace volvelle
