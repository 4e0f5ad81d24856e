#pragma once

#include "phrases/MIDIClipGenerator.h"

#include <string>
#include <vector>

// The private operations, for tests.
namespace volvelle {

struct MIDIPhraseProbe {
    static void transposeNotesToChord(MIDIPhrase& phrase, MIDIChordPhrase& chordTrack, double from, double to,
                                      int index)
    {
        phrase.transposeNotesToChord(chordTrack, from, to, index);
    }

    static bool transpose(MIDIPhrase& phrase, const ChordRule& rule, std::uint8_t note, double position)
    {
        return phrase.transpose(rule, note, position);
    }

    static bool hasNoteAtPosition(MIDIPhrase& phrase, const PhraseEvents& notes, std::uint8_t note,
                                  double position)
    {
        return phrase.hasNoteAtPosition(notes, note, position);
    }
};

struct MIDIChordPhraseProbe {
    static void addChord(MIDIChordPhrase& phrase, const std::shared_ptr<ChordEvent>& chord)
    {
        phrase.addChord(chord);
    }

    static void reduceChords(MIDIChordPhrase& phrase) { phrase.reduceChords(); }

    static void transposeChords(MIDIChordPhrase& phrase, double from, double to, MIDIChordPhrase& track,
                                int index)
    {
        phrase.transposeChords(from, to, track, index);
    }

    static void keepChordNote(MIDIChordPhrase& phrase, ChordEvent& chord,
                              const std::shared_ptr<PhraseEvent>& note, std::size_t place,
                              const std::vector<double>& positions)
    {
        phrase.keepChordNote(chord, note, place, positions);
    }
};

struct MIDIClipGeneratorProbe {
    static std::filesystem::path loadRandomFileAt(MIDIClipGenerator& generator, const std::string& path)
    {
        return generator.loadRandomFileAt(path);
    }

    static int countFiles(MIDIClipGenerator& generator, const std::vector<std::string>& files,
                          const std::string& at)
    {
        return generator.countFiles(files, at);
    }

    static std::string formatNumber(MIDIClipGenerator& generator, int number)
    {
        return generator.formatNumber(number);
    }
};

} // namespace volvelle
