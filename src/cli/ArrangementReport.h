#pragma once

#include "cli/CommandOutput.h"
#include "phrases/MIDIClipGenerator.h"

#include <array>
#include <string>
#include <vector>

namespace volvelle {

// A generator that keeps what it chose for each arrangement, for a report to the user.
class ReportingGenerator : public MIDIClipGenerator {
public:
    struct Phrase {
        std::string label; // of the channel
        std::string title; // of the phrase, its file's name where it has none
    };

    struct Chord {
        double position; // beats
        std::string name;
    };

    struct Arrangement {
        std::vector<Phrase> phrases;
        std::vector<Chord> chords;
        std::array<int, 16> notes{}; // by channel, as mixed
    };

    std::vector<Arrangement> arrangements; // since construction

    std::shared_ptr<MIDISequence16> makeArrangement(bool empty = false) override;
};

// Prints titles, chords and numbers of notes of all arrangements, one after the other.
void printReport(CommandOutput& output, ReportingGenerator& generator);

// The titles and the chords of one arrangement in one line.
std::string shortReport(const ReportingGenerator::Arrangement& arrangement);

} // namespace volvelle
