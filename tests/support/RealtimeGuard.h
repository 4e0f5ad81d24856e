#pragma once

namespace volvelle::test {

// While one lives, an allocation, a release of memory, a lock that is taken or tried, a condition variable
// or a semaphore that is waited for, one that is told, a sleep, a file or terminal that is opened, asked,
// mapped, read, written or closed on this thread ends the program with a line that says which; so many blocks
// may be taken by memalign and given back. Without effect under the sanitizers, which have allocators of
// their own.
class RealtimeGuard {
public:
    explicit RealtimeGuard(int releases = 0);
    ~RealtimeGuard();
    RealtimeGuard(const RealtimeGuard&) = delete;
    RealtimeGuard& operator=(const RealtimeGuard&) = delete;

    static bool isEffective();
};

} // namespace volvelle::test
