#include "tests/services/audiograph/RealtimeGuard.h"

#include <cstddef>
#include <cstdlib>
#include <cstring>
#include <dlfcn.h>
#include <pthread.h>
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

} // namespace

RealtimeGuard::RealtimeGuard(int releases)
{
    ++depth;
    releasesLeft = releases;
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

int pthread_mutex_lock(pthread_mutex_t* mutex) noexcept
{
    using Lock = int (*)(pthread_mutex_t*);
    static const auto next = reinterpret_cast<Lock>(dlsym(RTLD_NEXT, "pthread_mutex_lock"));
    volvelle::test::check("lock on a guarded thread\n");
    return next(mutex);
}

} // extern "C"

#endif
