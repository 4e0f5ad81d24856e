#include "base/MainThread.h"

#include "base/FatalStop.h"

#include <thread>

namespace volvelle {

#if defined(VOLVELLE_FAULT_POINTS) || !defined(NDEBUG)

namespace {

const std::thread::id mainThread = std::this_thread::get_id();

} // namespace

void assertMainThread()
{
    if (std::this_thread::get_id() != mainThread) {
        fatalStop("This may be called on the main thread only");
    }
}

#endif

} // namespace volvelle
