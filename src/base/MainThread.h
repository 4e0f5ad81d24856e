#pragma once

namespace volvelle {

// A fatal stop off the main thread, in builds for tests and for debugging; nothing in others. The main thread
// is the one that started the program. [any]
#if defined(VOLVELLE_FAULT_POINTS) || !defined(NDEBUG)
void assertMainThread();
#else
inline void assertMainThread() {}
#endif

} // namespace volvelle
