#pragma once

#include "phrases/MIDIClipGenerator.h"

#include <string>
#include <vector>

// The protected operations for tests, reached as a derived class reaches them.
namespace volvelle {

struct MIDIPhraseProbe : MIDIPhrase {
    static void transposeNotesToChordOf(MIDIPhrase& phrase, MIDIChordPhrase& chordTrack, double from,
                                        double to, int index)
    {
        constexpr auto operation = &MIDIPhraseProbe::transposeNotesToChord;
        (phrase.*operation)(chordTrack, from, to, index);
    }

    static bool transposeOf(MIDIPhrase& phrase, const ChordRule& rule, std::uint8_t note, double position)
    {
        constexpr bool (MIDIPhrase::*operation)(const ChordRule&, std::uint8_t, double) =
            &MIDIPhraseProbe::transpose;
        return (phrase.*operation)(rule, note, position);
    }

    static bool hasNoteAtPositionOf(MIDIPhrase& phrase, const PhraseEvents& notes, std::uint8_t note,
                                    double position)
    {
        constexpr auto operation = &MIDIPhraseProbe::hasNoteAtPosition;
        return (phrase.*operation)(notes, note, position);
    }
};

struct MIDIChordPhraseProbe : MIDIChordPhrase {
    static void addChordOf(MIDIChordPhrase& phrase, const std::shared_ptr<ChordEvent>& chord)
    {
        constexpr auto operation = &MIDIChordPhraseProbe::addChord;
        (phrase.*operation)(chord);
    }

    static void reduceChordsOf(MIDIChordPhrase& phrase)
    {
        constexpr auto operation = &MIDIChordPhraseProbe::reduceChords;
        (phrase.*operation)();
    }

    static void transposeChordsOf(MIDIChordPhrase& phrase, double from, double to, MIDIChordPhrase& track,
                                  int index)
    {
        constexpr auto operation = &MIDIChordPhraseProbe::transposeChords;
        (phrase.*operation)(from, to, track, index);
    }

    static void keepChordNoteOf(MIDIChordPhrase& phrase, ChordEvent& chord,
                                const std::shared_ptr<PhraseEvent>& note, std::size_t place,
                                const std::vector<double>& positions)
    {
        constexpr auto operation = &MIDIChordPhraseProbe::keepChordNote;
        (phrase.*operation)(chord, note, place, positions);
    }
};

struct MIDIClipGeneratorProbe : MIDIClipGenerator {
    static std::filesystem::path loadRandomFileAtOf(MIDIClipGenerator& generator, const std::string& path)
    {
        constexpr auto operation = &MIDIClipGeneratorProbe::loadRandomFileAt;
        return (generator.*operation)(path);
    }

    static int countFilesOf(MIDIClipGenerator& generator, const std::vector<std::string>& files,
                            const std::string& at)
    {
        constexpr auto operation = &MIDIClipGeneratorProbe::countFiles;
        return (generator.*operation)(files, at);
    }

    static std::string formatNumberOf(MIDIClipGenerator& generator, int number)
    {
        constexpr auto operation = &MIDIClipGeneratorProbe::formatNumber;
        return (generator.*operation)(number);
    }
};

} // namespace volvelle
