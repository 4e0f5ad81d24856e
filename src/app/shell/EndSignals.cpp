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
std::atomic<int> pipeEnd{-1};

void onSignal(int /*number*/)
{
    const int before = errno;
    const char mark = '!';
    [[maybe_unused]] const auto written = write(pipeEnd, &mark, 1);
    errno = before;
}

} // namespace

EndSignals::EndSignals(std::function<void()> asked) : notifier(QSocketNotifier::Read)
{
    if (pipe2(ends, O_CLOEXEC | O_NONBLOCK) != 0) {
        return;
    }
    pipeEnd = ends[1];
    notifier.setSocket(ends[0]);
    connect(&notifier, &QSocketNotifier::activated, this, [this, asked = std::move(asked)] {
        char marks[16];
        while (read(ends[0], marks, sizeof marks) > 0) {
        }
        asked();
    });
    notifier.setEnabled(true);
    for (const int number : asking) {
        if (std::signal(number, onSignal) == SIG_IGN) {
            std::signal(number, SIG_IGN);
        }
    }
}

EndSignals::~EndSignals()
{
    for (const int number : asking) {
        if (std::signal(number, SIG_DFL) == SIG_IGN) {
            std::signal(number, SIG_IGN);
        }
    }
    notifier.setEnabled(false);
    for (const int end : ends) {
        if (end >= 0) {
            close(end);
        }
    }
    pipeEnd = -1;
}

} // namespace volvelle
