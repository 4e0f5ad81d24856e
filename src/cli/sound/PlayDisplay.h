#pragma once

#include "cli/sound/TerminalLine.h"
#include "inspection/FileDescription.h"

#include <string>

namespace volvelle {

// The line that shows where the music is: "Bar 2.3  Am7  channels 1 2 9 10  5.5 of 16.0 beats".
class PlayDisplay {
public:
    explicit PlayDisplay(FileDescription description);

    // The line at a position in beats.
    std::string line(double position, bool isPaused) const;

    // Shows the line in place of the one before.
    void show(double position, bool isPaused);

    // Ends the line where there is one; the next begins anew.
    void finish() { shown.finish(); }

private:
    const FileDescription description;
    TerminalLine shown;
};

} // namespace volvelle
