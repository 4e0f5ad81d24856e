#include "services/audiograph/graph/AudioUnitCalls.h"

namespace volvelle {

OSStatus AudioUnitSetProperty(const AudioUnit& unit, std::uint32_t property, std::uint32_t scope,
                              std::uint32_t element, const void* data, std::uint32_t size)
{
    return unit == nullptr ? kAudio_ParamError : unit->setProperty(property, scope, element, data, size);
}

OSStatus MusicDeviceMIDIEvent(const AudioUnit& unit, std::uint32_t status, std::uint32_t data1,
                              std::uint32_t data2, std::uint32_t sampleOffset)
{
    return unit == nullptr ? kAudio_ParamError
                           : unit->musicDeviceMIDIEvent(status, data1, data2, sampleOffset);
}

} // namespace volvelle
