#include "midi/SystemExclusiveEvent.h"

#include "base/Console.h"
#include "base/Text.h"

namespace volvelle {

void SystemExclusiveEvent::dumpout() const
{
    safeprint(concat("\t\ttype: ", type, "."));
    safeprint(concat("\t\tlength: ", length, "."));
    safeprint(concat("\t\tdata: ", data, "."));
    safeprint(concat("\t\thexadecimal: ", toHex(), "."));
}

} // namespace volvelle
