#pragma once

#include "base/Clock.h"
#include "cli/CommandOutput.h"
#include "cli/SoundOptions.h"
#include "services/audiodevice/MIDIPorts.h"

#include <filesystem>
#include <vector>

namespace volvelle {

// Records a MIDI port into a MIDI file, until Ctrl-C or q, a closed terminal, the end of its time or of the
// port, and says at the end what was recorded: the messages that came, without the ends that were made for
// what still sounded. Nothing is written where nothing came. What cannot be written to where it was to go is
// saved elsewhere, and the status is exitFailed; so is it where a pipe has no reader, or a full one is not
// read, until the user ends that as well or `options.seconds` are over once more. Returns the exit status.
int runRecord(const RecordOptions& options, CommandOutput& output);

// What a recording stands on. The clock is that of the main run loop.
struct RecordGround {
    MIDIPorts& ports;
    const Clock& clock;
    std::vector<std::filesystem::path> spareFolders; // for what cannot be written to where it was to go
};

// The same on a ground of the caller's.
int runRecord(const RecordOptions& options, CommandOutput& output, const RecordGround& ground);

} // namespace volvelle
