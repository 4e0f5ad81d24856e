#include "cli/SuddenEnds.h"

#include "base/FatalStop.h"
#include "base/PendingFiles.h"
#include "cli/CommandOutput.h"
#include "services/files/HeldSignals.h"
#include "services/files/NewFile.h"

#include <csignal>
#include <cstdlib>
#include <exception>
#include <fcntl.h>
#include <new>
#include <string_view>
#include <unistd.h>

namespace volvelle {

namespace {

void endAfterFatalStop()
{
    removePendingFiles();
    std::_Exit(exitFailed);
}

void endAfterSignal(int signal)
{
    removePendingFiles();
    _exit(128 + signal);
}

bool isOutOfMemory(const std::exception_ptr& exception)
{
    try {
        std::rethrow_exception(exception);
    } catch (const std::bad_alloc&) {
        return true;
    } catch (...) {
        return false;
    }
}

void endAfterException()
{
    constexpr std::string_view line = "The memory does not suffice.\n";
    removePendingFiles();
    const std::exception_ptr exception = std::current_exception();
    if (exception && isOutOfMemory(exception)) {
        writeAll(STDERR_FILENO, line.data(), line.size());
        std::_Exit(exitFailed);
    }
    std::abort();
}

} // namespace

void prepareSuddenEnds()
{
    setFinalStep(endAfterFatalStop);
    std::set_terminate(endAfterException);
    for (const int signal : endingSignals) {
        if (std::signal(signal, SIG_IGN) != SIG_IGN) {
            std::signal(signal, endAfterSignal);
        }
    }
    std::signal(SIGXFSZ, SIG_IGN);
}

void holdStandardStreams()
{
    int opened = 0;
    while (opened >= 0 && opened <= STDERR_FILENO) {
        opened = open("/dev/null", O_RDONLY);
    }
    close(opened);
}

} // namespace volvelle
