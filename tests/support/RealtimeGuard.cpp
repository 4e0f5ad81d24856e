#include "tests/support/RealtimeGuard.h"

#include <cstdarg>
#include <cstddef>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <dlfcn.h>
#include <fcntl.h>
#include <pthread.h>
#include <semaphore.h>
#include <sys/ioctl.h>
#include <sys/mman.h>
#include <termios.h>
#include <time.h>
#include <unistd.h>

#if defined(__SANITIZE_ADDRESS__) || defined(__SANITIZE_THREAD__)
#define VOLVELLE_SANITIZED
#elif defined(__has_feature)
#if __has_feature(address_sanitizer) || __has_feature(thread_sanitizer)
#define VOLVELLE_SANITIZED
#endif
#endif

namespace volvelle::test {

namespace {

thread_local int depth = 0;
thread_local int releasesLeft = 0;
thread_local int alignedLeft = 0;

} // namespace

RealtimeGuard::RealtimeGuard(int releases)
{
    ++depth;
    releasesLeft = releases;
    alignedLeft = releases;
}

RealtimeGuard::~RealtimeGuard()
{
    --depth;
}

#ifdef VOLVELLE_SANITIZED

bool RealtimeGuard::isEffective()
{
    return false;
}

} // namespace volvelle::test

#else

bool RealtimeGuard::isEffective()
{
    return true;
}

namespace {

void check(const char* what) noexcept
{
    if (depth > 0) {
        depth = 0;
        if (write(STDERR_FILENO, what, std::strlen(what)) >= 0) {
            std::abort();
        }
    }
}

} // namespace

} // namespace volvelle::test

extern "C" {

void* __libc_malloc(std::size_t size);
void* __libc_calloc(std::size_t count, std::size_t size);
void* __libc_realloc(void* memory, std::size_t size);
void __libc_free(void* memory);

void* malloc(std::size_t size)
{
    volvelle::test::check("malloc on a guarded thread\n");
    return __libc_malloc(size);
}

void* calloc(std::size_t count, std::size_t size)
{
    volvelle::test::check("calloc on a guarded thread\n");
    return __libc_calloc(count, size);
}

void* realloc(void* memory, std::size_t size)
{
    volvelle::test::check("realloc on a guarded thread\n");
    return __libc_realloc(memory, size);
}

void free(void* memory)
{
    if (volvelle::test::releasesLeft > 0) {
        --volvelle::test::releasesLeft;
    } else {
        volvelle::test::check("free on a guarded thread\n");
    }
    __libc_free(memory);
}

void* memalign(std::size_t alignment, std::size_t size) noexcept
{
    using Next = void* (*)(std::size_t, std::size_t);
    static const auto next = reinterpret_cast<Next>(dlsym(RTLD_NEXT, "memalign"));
    if (volvelle::test::alignedLeft > 0) {
        --volvelle::test::alignedLeft;
    } else {
        volvelle::test::check("memalign on a guarded thread\n");
    }
    return next(alignment, size);
}

// NAME(PARAMETERS) traps and goes on to the library's own.
#define VOLVELLE_TRAP(result, name, parameters, arguments, ...)                                              \
    result name parameters __VA_ARGS__                                                                       \
    {                                                                                                        \
        using Next = result(*) parameters;                                                                   \
        static const auto next = reinterpret_cast<Next>(dlsym(RTLD_NEXT, #name));                            \
        volvelle::test::check(#name " on a guarded thread\n");                                               \
        return next arguments;                                                                               \
    }

VOLVELLE_TRAP(void*, aligned_alloc, (std::size_t alignment, std::size_t size), (alignment, size), noexcept)
VOLVELLE_TRAP(int, posix_memalign, (void** memory, std::size_t alignment, std::size_t size),
              (memory, alignment, size), noexcept)
VOLVELLE_TRAP(int, pthread_mutex_lock, (pthread_mutex_t * mutex), (mutex), noexcept)
VOLVELLE_TRAP(int, pthread_mutex_trylock, (pthread_mutex_t * mutex), (mutex), noexcept)
VOLVELLE_TRAP(int, pthread_rwlock_rdlock, (pthread_rwlock_t * lock), (lock), noexcept)
VOLVELLE_TRAP(int, pthread_rwlock_wrlock, (pthread_rwlock_t * lock), (lock), noexcept)
VOLVELLE_TRAP(int, pthread_rwlock_tryrdlock, (pthread_rwlock_t * lock), (lock), noexcept)
VOLVELLE_TRAP(int, pthread_rwlock_trywrlock, (pthread_rwlock_t * lock), (lock), noexcept)
VOLVELLE_TRAP(int, pthread_cond_signal, (pthread_cond_t * condition), (condition), noexcept)
VOLVELLE_TRAP(int, pthread_cond_broadcast, (pthread_cond_t * condition), (condition), noexcept)
VOLVELLE_TRAP(int, pthread_cond_wait, (pthread_cond_t * condition, pthread_mutex_t* mutex),
              (condition, mutex), )
VOLVELLE_TRAP(int, pthread_cond_timedwait,
              (pthread_cond_t * condition, pthread_mutex_t* mutex, const timespec* until),
              (condition, mutex, until), )
VOLVELLE_TRAP(int, pthread_cond_clockwait,
              (pthread_cond_t * condition, pthread_mutex_t* mutex, clockid_t clock, const timespec* until),
              (condition, mutex, clock, until), )
VOLVELLE_TRAP(int, pthread_mutex_timedlock, (pthread_mutex_t * mutex, const timespec* until), (mutex, until),
              noexcept)
VOLVELLE_TRAP(int, pthread_mutex_clocklock, (pthread_mutex_t * mutex, clockid_t clock, const timespec* until),
              (mutex, clock, until), noexcept)
VOLVELLE_TRAP(int, sem_wait, (sem_t * semaphore), (semaphore), )
VOLVELLE_TRAP(int, sem_timedwait, (sem_t * semaphore, const timespec* until), (semaphore, until), )
VOLVELLE_TRAP(int, nanosleep, (const timespec* time, timespec* left), (time, left), )
VOLVELLE_TRAP(int, clock_nanosleep, (clockid_t clock, int flags, const timespec* time, timespec* left),
              (clock, flags, time, left), )
VOLVELLE_TRAP(void*, mmap, (void* at, std::size_t size, int access, int flags, int file, off_t place),
              (at, size, access, flags, file, place), noexcept)
VOLVELLE_TRAP(int, munmap, (void* at, std::size_t size), (at, size), noexcept)
VOLVELLE_TRAP(int, tcgetattr, (int file, termios* settings), (file, settings), noexcept)
VOLVELLE_TRAP(FILE*, fopen, (const char* path, const char* mode), (path, mode), )
VOLVELLE_TRAP(FILE*, fopen64, (const char* path, const char* mode), (path, mode), )
VOLVELLE_TRAP(std::size_t, fread, (void* to, std::size_t size, std::size_t count, FILE* file),
              (to, size, count, file), )
VOLVELLE_TRAP(std::size_t, fwrite, (const void* from, std::size_t size, std::size_t count, FILE* file),
              (from, size, count, file), )
VOLVELLE_TRAP(int, fputs, (const char* text, FILE* file), (text, file), )
VOLVELLE_TRAP(int, close, (int file), (file), )
VOLVELLE_TRAP(ssize_t, read, (int file, void* to, std::size_t size), (file, to, size), )
VOLVELLE_TRAP(ssize_t, pread, (int file, void* to, std::size_t size, off_t place), (file, to, size, place), )
VOLVELLE_TRAP(ssize_t, pread64, (int file, void* to, std::size_t size, off64_t place),
              (file, to, size, place), )
VOLVELLE_TRAP(ssize_t, write, (int file, const void* from, std::size_t size), (file, from, size), )

int open(const char* path, int flags, ...)
{
    using Next = int (*)(const char*, int, ...);
    static const auto next = reinterpret_cast<Next>(dlsym(RTLD_NEXT, "open"));
    volvelle::test::check("open on a guarded thread\n");
    std::va_list more;
    va_start(more, flags);
    const int mode = va_arg(more, int);
    va_end(more);
    return next(path, flags, mode);
}

int openat(int folder, const char* path, int flags, ...)
{
    using Next = int (*)(int, const char*, int, ...);
    static const auto next = reinterpret_cast<Next>(dlsym(RTLD_NEXT, "openat"));
    volvelle::test::check("openat on a guarded thread\n");
    std::va_list more;
    va_start(more, flags);
    const int mode = va_arg(more, int);
    va_end(more);
    return next(folder, path, flags, mode);
}

int ioctl(int file, unsigned long request, ...) noexcept
{
    using Next = int (*)(int, unsigned long, ...);
    static const auto next = reinterpret_cast<Next>(dlsym(RTLD_NEXT, "ioctl"));
    volvelle::test::check("ioctl on a guarded thread\n");
    std::va_list more;
    va_start(more, request);
    void* const argument = va_arg(more, void*);
    va_end(more);
    return next(file, request, argument);
}

} // extern "C"

#endif
