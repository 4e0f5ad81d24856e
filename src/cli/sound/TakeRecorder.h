#pragma once

#include "MIDISequences/realtime/MIDIRecorder.h"
#include "base/Status.h"

namespace volvelle {

// Writes exclusives whole, and where they came, that are too long for the records of a sequence, which cut
// them off. These stand in the music sequence alone, not in the tree. [main]
class TakeRecorder : public MIDIRecorder {
public:
    OSStatus status = noErr; // the first failure with such an exclusive

    void sysexAtSamplePosition(std::uint16_t length, const std::vector<std::uint8_t>& data,
                               std::int64_t position) override;
};

} // namespace volvelle
