#include "app/shell/EndSignals.h"

#include <atomic>
#include <cerrno>
#include <csignal>
#include <fcntl.h>
#include <unistd.h>
#include <utility>

namespace volvelle {

namespace {

constexpr int asking[] = {SIGINT, SIGTERM, SIGHUP};

// Of a pipe, which lasts as long as the process.
std::atomic<int> readingEnd{-1};
std::atomic<int> writingEnd{-1};

void onSignal(int /*number*/)
{
    const int before = errno;
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
