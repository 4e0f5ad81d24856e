#include "app/shell/EndSignals.h"

#include "base/PendingFiles.h"

#include <atomic>
#include <cerrno>
#include <csignal>
#include <cstdint>
#include <ctime>
#include <fcntl.h>
#include <unistd.h>
#include <utility>

namespace volvelle {

namespace {

constexpr int asking[] = {SIGINT, SIGTERM, SIGHUP};

// Of a pipe, which lasts as long as the process.
std::atomic<int> readingEnd{-1};
std::atomic<int> writingEnd{-1};

// When the signal came that waits, in milliseconds of a clock that never goes back; 0 while none waits.
std::atomic<std::int64_t> waitsSince{0};
static_assert(std::atomic<std::int64_t>::is_always_lock_free);

// A session that ends, and a program that limits another's time, send several at once.
constexpr std::int64_t oneAsking = 500; // milliseconds

std::int64_t now()
{
    timespec time = {};
    clock_gettime(CLOCK_MONOTONIC, &time);
    return std::int64_t{time.tv_sec} * 1000 + time.tv_nsec / 1'000'000 + 1;
}

void onSignal(int number)
{
    const int before = errno;
    std::int64_t since = 0;
    if (!waitsSince.compare_exchange_strong(since, now()) && now() - since > oneAsking) {
        removePendingFiles();
        _exit(128 + number);
    }
    const char mark = '!';
    [[maybe_unused]] const auto written = write(writingEnd, &mark, 1);
    errno = before;
}

// Those that are ignored stay so.
void answerBy(void (*handler)(int))
{
    for (const int number : asking) {
        if (std::signal(number, handler) == SIG_IGN) {
            std::signal(number, SIG_IGN);
        }
    }
}

} // namespace

void EndSignals::hold()
{
    int ends[2] = {-1, -1};
    if (readingEnd < 0 && pipe2(ends, O_CLOEXEC | O_NONBLOCK) == 0) {
        readingEnd = ends[0];
        writingEnd = ends[1];
    }
    if (readingEnd >= 0) {
        answerBy(onSignal);
    }
}

EndSignals::EndSignals(std::function<void()> asked) : notifier(QSocketNotifier::Read)
{
    hold();
    if (readingEnd < 0) {
        return;
    }
    notifier.setSocket(readingEnd);
    connect(&notifier, &QSocketNotifier::activated, this, [asked = std::move(asked)] {
        waitsSince = 0;
        char marks[16];
        while (read(readingEnd, marks, sizeof marks) > 0) {
        }
        asked();
    });
    notifier.setEnabled(true);
}

EndSignals::~EndSignals()
{
    answerBy(SIG_DFL);
    notifier.setEnabled(false);
}

} // namespace volvelle
