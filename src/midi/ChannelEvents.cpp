#include "midi/ChannelEvents.h"

#include "base/Console.h"
#include "base/Text.h"

namespace volvelle {

void MidiNoteEvent::dumpout() const
{
    EventNode::dumpout();
    safeprint("\t\tduration: ", duration, ".");
    safeprint("\t\tnumber: ", number, ".");
    safeprint("\t\tvelocity: ", velocity, ".");
    safeprint("\t\treleaseVelocity: ", releaseVelocity, ".");
}

} // namespace volvelle
