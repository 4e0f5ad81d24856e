#pragma once

#include "base/Console.h"
#include "base/Text.h"

namespace volvelle {

// One line of the log, the texts of all arguments joined.
template <class... Values>
void logLine(const Values&... values)
{
    if (console().isHeard()) {
        safeprint(concat(values...));
    }
}

} // namespace volvelle
