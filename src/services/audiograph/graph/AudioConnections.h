#pragma once

#include "services/audiograph/graph/AVAudioFormat.h"

#include <memory>
#include <vector>

namespace volvelle {

class AVAudioNode;
class ConnectionConverter;

struct AudioConnection {
    std::shared_ptr<AVAudioNode> from;
    int fromBus = 0;
    std::shared_ptr<AVAudioNode> to;
    int toBus = 0;
    AVAudioFormat format;
    std::shared_ptr<ConnectionConverter> converter; // null where none is needed, or none was made yet
};

// Which output goes to which input: each to one at most. [main]
class AudioConnections {
public:
    // In the order of entry.
    std::vector<AudioConnection> list;

    // Takes the place of what both ends were connected to.
    void add(AudioConnection connection);

    void removeInput(const AVAudioNode& node, int bus);
    void removeInputs(const AVAudioNode& node);
    void removeOutputs(const AVAudioNode& node);

    // Null where nothing is connected.
    const AudioConnection* input(const AVAudioNode& node, int bus) const;
    const AudioConnection* output(const AVAudioNode& node) const;

    // The connections into the node, by bus.
    std::vector<AudioConnection*> inputs(const AVAudioNode& node);

    // True where what `from` sounds arrives at `to`, or they are the same.
    bool leads(const AVAudioNode& from, const AVAudioNode& to) const;
};

} // namespace volvelle
