#pragma once

#include <filesystem>
#include <string_view>

namespace volvelle {

// Listens to a transport, which holds it weakly. Called from the main queue alone, never inside the operation
// that brought the call about. [main]
class MIDISequencerDelegate {
public:
    virtual ~MIDISequencerDelegate() = default;

    // "play", "pause" or "stop".
    virtual void onSequencerStateChanged(std::string_view state) = 0;

    // At each tick before the end; both in beats.
    virtual void onSequencerProgress(double current, double total) = 0;

    // Once, after the "stop" at the end of the sequence.
    virtual void onSequencerComplete() = 0;

    // The transport never sends it.
    virtual void onMIDILoad(const std::filesystem::path& url) = 0;
};

} // namespace volvelle
