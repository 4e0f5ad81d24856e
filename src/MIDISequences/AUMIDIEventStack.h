#pragma once

#include "MIDISequences/AUMIDIEventEx.h"

#include <memory>
#include <vector>

namespace volvelle {

// Prepared events for the render thread. All places hold one and the same event: an event taken is a scratch
// record that the next call gives again.
class AUMIDIEventStack {
public:
    AUMIDIEventStack();
    virtual ~AUMIDIEventStack() = default;

    static constexpr int MAXEVENTS = 512;

    // The next prepared event, in a ring; a fresh one where there are none. [realtime]
    virtual std::shared_ptr<AUMIDIEventEx> next();

protected:
    explicit AUMIDIEventStack(std::vector<std::shared_ptr<AUMIDIEventEx>> items) : items(std::move(items)) {}

private:
    std::vector<std::shared_ptr<AUMIDIEventEx>> items;
    int currentIndex = 0;
};

} // namespace volvelle
