#include "midi/EventNode.h"

#include "base/Checked.h"
#include "base/Console.h"
#include "base/Text.h"
#include "midi/TrackNode.h"

namespace volvelle {

std::string EventNode::toHex(std::uint8_t value) const
{
    return "0x" + hexadecimal(value, ' ');
}

void EventNode::dumpout() const
{
    safeprint(concat("\t\tpattern: ", pattern == nullptr ? "nil" : pattern->className(), "."));
    safeprint(concat("\t\ttrack: ", track == nullptr ? "nil" : track->className(), "."));
    safeprint(concat("\t\tuid: ", uid, "."));
    safeprint(concat("\t\tstatus mask: ", statusMask, "."));
    safeprint(concat("\t\tstatus byte: ", getStausByte(), "."));
    safeprint(concat("\t\tposition: ", position, "."));
    safeprint(concat("\t\tchannel: ", channel, "."));
}

std::uint8_t EventNode::getStausByte() const
{
    return checkedAdd(statusMask, channel);
}

} // namespace volvelle
