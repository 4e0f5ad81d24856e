#include "midi/SystemExclusiveEvent.h"

#include "base/Console.h"
#include "base/Text.h"

namespace volvelle {

void SystemExclusiveEvent::dumpout() const
{
    safeprint("\t\ttype: ", type, ".");
    safeprint("\t\tlength: ", length, ".");
    safeprint("\t\tdata: ", data, ".");
    safeprint("\t\thexadecimal: ", toHex(), ".");
}

} // namespace volvelle
