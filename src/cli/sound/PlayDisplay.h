#pragma once

#include "cli/sound/TerminalLine.h"
#include "inspection/FileDescription.h"
#include "wire/ShortMessage.h"

#include <array>
#include <string>
#include <vector>

namespace volvelle {

// The line that shows where the music is: "Bar 2.3  Am7  channels 1 2 9 10  5.5 of 16.0 beats".
class PlayDisplay {
public:
    explicit PlayDisplay(FileDescription file);

    // The line at a position in beats.
    std::string line(double position, bool isPaused) const;

    // Shows the line in place of the one before.
    void show(double position, bool isPaused);

    // Ends the line where there is one; the next begins anew.
    void finish() { shown.finish(); }

private:
    // A stretch in which a channel sounds, its end left out. Beats.
    struct Span {
        double begin = 0.0;
        double end = 0.0;
    };

    void addSpans(const FileDescription& file);
    std::string chordAt(double position) const;
    std::string soundingChannels(double position) const;

    double length;                                     // beats
    std::vector<FoundChord> chords;                    // by position
    std::array<std::vector<Span>, channelCount> spans; // of each channel, apart from one another and in order
    TerminalLine shown;
};

} // namespace volvelle
