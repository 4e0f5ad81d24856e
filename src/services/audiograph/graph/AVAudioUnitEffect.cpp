#include "services/audiograph/graph/AVAudioUnitEffect.h"

#include "services/audiograph/graph/AudioComponentRegistry.h"

namespace volvelle {

std::shared_ptr<AVAudioUnitEffect> AVAudioUnitEffect::make(const AudioComponentDescription& description)
{
    std::shared_ptr<AUAudioUnit> unit = makeAudioComponent(description);
    return unit == nullptr ? nullptr : std::make_shared<AVAudioUnitEffect>(std::move(unit));
}

} // namespace volvelle
