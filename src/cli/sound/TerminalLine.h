#pragma once

#include <string>

namespace volvelle {

// A line on standard output that is shown anew in its place, on a terminal alone and in its foreground.
class TerminalLine {
public:
    // Shows the line in place of the one before; no more of it than fits into a row.
    void show(std::string line);

    // Ends the line where there is one; the next begins anew.
    void finish();

private:
    std::string shown;
};

} // namespace volvelle
