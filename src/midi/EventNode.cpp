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
    safeprint("\t\tpattern: ", pattern == nullptr ? "nil" : pattern->className(), ".");
    safeprint("\t\ttrack: ", track == nullptr ? "nil" : track->className(), ".");
    safeprint("\t\tuid: ", uid, ".");
    safeprint("\t\tstatus mask: ", statusMask, ".");
    safeprint("\t\tstatus byte: ", getStausByte(), ".");
    safeprint("\t\tposition: ", position, ".");
    safeprint("\t\tchannel: ", channel, ".");
}

std::uint8_t EventNode::getStausByte() const
{
    return checkedAdd(statusMask, channel);
}

} // namespace volvelle
