#pragma once

#include <memory>
#include <optional>
#include <string>
#include <utility>

using snd_seq_t = struct _snd_seq; // NOLINT(bugprone-reserved-identifier): the library's name

namespace volvelle {

// The client and the port at the end of a name of the kernel's sequencer: 128 and 0 of "Keys:Keys out 128:0".
// No value where there are none.
std::optional<std::pair<int, int>> sequencerAddressOf(const std::string& portName);

// Tells who hears a port of the kernel's MIDI sequencer. Opens it once, at the first question. [main]
class PortListeners {
public:
    // True where the port of that name is there and a port of this process is connected to it; also where
    // the sequencer cannot be asked.
    bool hasThisProcess(const std::string& portName);

private:
    struct Close {
        void operator()(snd_seq_t* opened) const;
    };

    bool isOfThisProcess(int client);

    std::unique_ptr<snd_seq_t, Close> sequencer;
};

} // namespace volvelle
