#pragma once

namespace volvelle::test {

// While one lives, an allocation, a release of memory or a lock on this thread ends the program with a line
// that says which; so many releases are let pass. Without effect under the sanitizers, which have allocators
// of their own.
class RealtimeGuard {
public:
    explicit RealtimeGuard(int releases = 0);
    ~RealtimeGuard();
    RealtimeGuard(const RealtimeGuard&) = delete;
    RealtimeGuard& operator=(const RealtimeGuard&) = delete;

    static bool isEffective();
};

} // namespace volvelle::test
