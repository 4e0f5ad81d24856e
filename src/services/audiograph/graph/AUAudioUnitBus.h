#pragma once

#include "services/audiograph/graph/AVAudioFormat.h"

#include <string>

namespace volvelle {

// A way into a unit or out of it.
struct AUAudioUnitBus {
    AVAudioFormat format;
    std::string name;
    bool isEnabled = true;
};

} // namespace volvelle
