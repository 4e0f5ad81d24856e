#pragma once

#include "services/audiograph/graph/AUAudioUnit.h"
#include "services/audiograph/graph/AudioComponentDescription.h"

#include <functional>
#include <memory>

namespace volvelle {

using AudioComponentFactory = std::function<std::shared_ptr<AUAudioUnit>(const AudioComponentDescription&)>;

// From now on `factory` makes the component that type, subtype and manufacturer name, in place of any before;
// an empty factory takes the component away. The limiter is there from the start. [main]
void registerAudioComponent(const AudioComponentDescription& description, AudioComponentFactory factory);

// A new unit, null where no such component is registered or its factory gives none. [main]
std::shared_ptr<AUAudioUnit> makeAudioComponent(const AudioComponentDescription& description);

} // namespace volvelle
