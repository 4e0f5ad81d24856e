#pragma once

#include "inspection/ChordAnalysis.h"
#include "services/musicsequence/MusicSequence.h"

#include <cstdint>
#include <optional>
#include <string>
#include <vector>

namespace volvelle {

// An event that is no note and no tempo.
struct FoundEvent {
    double position = 0.0;           // beats
    std::string type;                // "controller", "text", "time signature" ...
    std::optional<int> channel;      // of a channel message
    std::vector<std::uint8_t> data;  // the bytes after status or meta type
    std::optional<std::string> text; // of a text event, UTF-8
};

struct FoundTempo {
    double position = 0.0; // beats
    double bpm = 0.0;
};

struct FoundTrack {
    int index = 0;
    std::optional<int> channel; // where all its channel events share one
    std::string name;           // UTF-8
    double length = 0.0;        // beats
    std::vector<FoundNote> notes;
    std::vector<FoundEvent> events;
};

// What a MIDI file holds, in its own tracks.
struct FileDescription {
    int division = 480;  // ticks to the beat
    double length = 0.0; // beats, of the longest track
    std::vector<FoundTempo> tempo;
    std::vector<FoundTrack> tracks;
    std::vector<FoundChord> chords;
    std::vector<std::string> warnings; // what was mended while reading, the first 20 places
    int moreWarnings = 0;              // the number of those beyond
};

// The one line about what was mended, and what was kept of the file; empty where nothing was.
std::string warningLine(const FileDescription& description);

// Both read a file, the second its bytes. A status other than noErr leaves the description incomplete.
[[nodiscard]] OSStatus describeFile(const std::filesystem::path& file, FileDescription& description);
[[nodiscard]] OSStatus describeData(const std::vector<std::uint8_t>& data, FileDescription& description);

} // namespace volvelle
