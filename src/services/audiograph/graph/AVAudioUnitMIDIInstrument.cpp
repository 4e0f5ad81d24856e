#include "services/audiograph/graph/AVAudioUnitMIDIInstrument.h"

#include "services/audiograph/graph/AudioComponentRegistry.h"

namespace volvelle {

std::shared_ptr<AVAudioUnitMIDIInstrument>
AVAudioUnitMIDIInstrument::make(const AudioComponentDescription& description)
{
    return of(makeAudioComponent(description));
}

std::shared_ptr<AVAudioUnitMIDIInstrument> AVAudioUnitMIDIInstrument::of(std::shared_ptr<AUAudioUnit> unit)
{
    return unit == nullptr ? nullptr : std::make_shared<AVAudioUnitMIDIInstrument>(std::move(unit));
}

} // namespace volvelle
