#pragma once

#include "services/audiograph/graph/AVAudioUnit.h"

namespace volvelle {

// The node of any unit.
class AVAudioUnitEffect : public AVAudioUnit {
public:
    // Null where no such component is registered. [main]
    static std::shared_ptr<AVAudioUnitEffect> make(const AudioComponentDescription& description);

    using AVAudioUnit::AVAudioUnit;
};

} // namespace volvelle
