#pragma once

#include "cli/CommandOutput.h"
#include "cli/ScreenOptions.h"

namespace volvelle {

// Paints the disc of a MIDI file into a PNG, without a display. Returns the exit status. [main]
int runPicture(const PictureOptions& options, CommandOutput& output);

} // namespace volvelle
