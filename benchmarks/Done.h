#pragma once

#include "base/FatalStop.h"
#include "base/Result.h"
#include "base/Status.h"

#include <string>

namespace volvelle {

// Ends a benchmark whose preparation fails: what it measured then would be nothing.
inline void done(OSStatus status)
{
    if (status != noErr) {
        fatalStop("A benchmark's own call failed with status " + std::to_string(status) + ".");
    }
}

inline void done(const Result<>& result)
{
    if (!result) {
        fatalStop("A benchmark's own call failed: " + result.error());
    }
}

} // namespace volvelle
