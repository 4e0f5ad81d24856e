#pragma once

#include "base/Console.h"

namespace volvelle {

// One line of the log, the texts of all arguments joined.
template <class... Values>
void logLine(const Values&... values)
{
    safeprint(values...);
}

} // namespace volvelle
