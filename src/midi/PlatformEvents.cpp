#include "midi/PlatformEvents.h"

#include "base/Console.h"
#include "base/Text.h"

namespace volvelle {

void TempoEvent::dumpout() const
{
    EventNode::dumpout();
    safeprint("\t\tvalue: ", value, ".");
}

} // namespace volvelle
