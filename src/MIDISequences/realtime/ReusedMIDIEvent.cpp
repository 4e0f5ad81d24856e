#include "MIDISequences/realtime/ReusedMIDIEvent.h"

#include "MIDISequences/RenderEventPool.h"

#include <algorithm>

namespace volvelle {

ReusedMIDIEvent::ReusedMIDIEvent(std::uint32_t room)
    : AUMIDIEventEx(std::vector<std::uint8_t>(room)), room(room)
{
}

std::vector<std::uint8_t> ReusedMIDIEvent::array() const
{
    return {data(), data() + used};
}

void ReusedMIDIEvent::InitializeWith(const AUMIDIEvent& aumi)
{
    if (aumi.length > room) {
        return;
    }
    setEvent(aumi);
    std::copy_n(renderEventBytes(aumi), aumi.length, data());
    used = aumi.length;
}

} // namespace volvelle
