#pragma once

#include "sequence/MIDISequence.h"
#include "services/musicsequence/FaultPoint.h"

#include <functional>
#include <iosfwd>
#include <string>
#include <vector>

namespace volvelle::test {

// One way of writing an event into a sequence of four tracks, and all that comes of it.
struct WrittenEvent {
    std::string name;
    std::function<void(MIDISequence&)> create;
    int track = 0;      // of the tree and of the music sequence
    std::string node;   // as describe() tells it
    std::string record; // as contents() tells it
    MusicSequenceOperation operation = MusicSequenceOperation::MusicTrackNewMIDIChannelEvent;
    std::string failure; // after the status
    std::string call;    // of the listener
};

std::vector<WrittenEvent> writtenChannelEvents();
std::vector<WrittenEvent> writtenMetaEvents();

// Both.
std::vector<WrittenEvent> writtenEvents();

// How a failed test names it.
void PrintTo(const WrittenEvent& event, std::ostream* stream);

} // namespace volvelle::test
