#pragma once

#include <csignal>
#include <sys/resource.h>

namespace volvelle::test {

// Lets no file grow beyond a size for its lifetime.
class FileSizeLimit {
public:
    explicit FileSizeLimit(rlim_t size)
    {
        handler = std::signal(SIGXFSZ, SIG_IGN);
        getrlimit(RLIMIT_FSIZE, &before);
        const rlimit limit{size, before.rlim_max};
        setrlimit(RLIMIT_FSIZE, &limit);
    }

    ~FileSizeLimit()
    {
        setrlimit(RLIMIT_FSIZE, &before);
        std::signal(SIGXFSZ, handler);
    }

    FileSizeLimit(const FileSizeLimit&) = delete;
    FileSizeLimit& operator=(const FileSizeLimit&) = delete;

private:
    rlimit before{};
    void (*handler)(int) = nullptr;
};

} // namespace volvelle::test
