#include "midi/ChannelEvents.h"

#include "base/Console.h"
#include "base/Text.h"

namespace volvelle {

void MidiNoteEvent::dumpout() const
{
    EventNode::dumpout();
    safeprint(concat("\t\tduration: ", duration, "."));
    safeprint(concat("\t\tnumber: ", number, "."));
    safeprint(concat("\t\tvelocity: ", velocity, "."));
    safeprint(concat("\t\treleaseVelocity: ", releaseVelocity, "."));
}

} // namespace volvelle
