#include "tests/services/documents/SystemCalls.h"

#include <cstdio>
#include <fcntl.h>
#include <sys/syscall.h>
#include <unistd.h>
#include <utility>

// These stand in for those of the C library.

extern "C" int renameat2(int fromFolder, const char* from, int toFolder, const char* to,
                         unsigned flags) noexcept
{
    if (const auto hook = std::exchange(volvelle::test::beforeRenaming, {})) {
        hook();
    }
    return static_cast<int>(syscall(SYS_renameat2, fromFolder, from, toFolder, to, flags));
}

extern "C" int rename(const char* from, const char* to) noexcept
{
    return renameat2(AT_FDCWD, from, AT_FDCWD, to, 0);
}

extern "C" int fsync(int descriptor)
{
    ++volvelle::test::synchronised;
    return static_cast<int>(syscall(SYS_fsync, descriptor));
}
