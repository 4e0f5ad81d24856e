#pragma once

#include "phrases/MIDIClipGenerator.h"
#include "wire/ShortMessage.h"

#include <array>
#include <filesystem>
#include <string>
#include <vector>

namespace volvelle {

// What one arrangement holds.
struct ArrangementSummary {
    struct Phrase {
        std::string label; // of its track
        std::string title; // its own, its file's name where it has none
        std::filesystem::path file;
        OSStatus status = noErr; // of reading it
    };

    struct Chord {
        double position; // beats
        std::string name;
    };

    std::vector<Phrase> phrases; // those from files, in the order of the tracks
    std::vector<Chord> chords;
    std::array<int, channelCount> notes{}; // as mixed
};

// The last arrangement of the generator; none is a fatal stop.
ArrangementSummary summaryOf(MIDIClipGenerator& generator);

} // namespace volvelle
