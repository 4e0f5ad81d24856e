#include "cli/SuddenEnds.h"

#include "base/FatalStop.h"
#include "cli/StopContext.h"
#include "services/files/NewFile.h"
#include "tests/cli/ProgramRun.h"

#include <cerrno>
#include <csignal>
#include <cstdlib>
#include <gmock/gmock.h>
#include <new>
#include <sys/resource.h>
#include <thread>
#include <unistd.h>

namespace volvelle::test {
namespace {

using testing::ExitedWithCode;
using testing::IsEmpty;

// Each end is that of a process of its own, which has begun a file by then.
class SuddenEndsDeathTest : public ProgramRun {
protected:
    void beginFile()
    {
        prepareSuddenEnds();
        if (!file.create(folder / "work/a.mid") || names().size() != 1) {
            _exit(99);
        }
    }

    static void limitFiles(rlim_t bytes)
    {
        const rlimit limit{bytes, bytes};
        setrlimit(RLIMIT_FSIZE, &limit);
    }

    NewFile file;
};

TEST_F(SuddenEndsDeathTest, ASignalLeavesNoFileBehind)
{
    for (const int signal : {SIGINT, SIGTERM, SIGHUP, SIGPIPE, SIGQUIT, SIGXCPU}) {
        EXPECT_EXIT(
            {
                beginFile();
                std::raise(signal);
            },
            ExitedWithCode(128 + signal), "");
        EXPECT_THAT(names(), IsEmpty()) << signal;
    }
}

TEST_F(SuddenEndsDeathTest, AFatalStopLeavesNoFileBehind)
{
    EXPECT_EXIT(
        {
            beginFile();
            fatalStop("stopped");
        },
        ExitedWithCode(1), "^stopped\n$");
    EXPECT_THAT(names(), IsEmpty());
}

TEST_F(SuddenEndsDeathTest, AFatalStopNamesTheFileThatIsLoaded)
{
    EXPECT_EXIT(
        {
            beginFile();
            const StopContext context("b.mid");
            fatalStop("stopped");
        },
        ExitedWithCode(1), "^stopped\nThat stopped the loading of 'b.mid'.\n$");
    EXPECT_EXIT(
        {
            beginFile();
            {
                const StopContext context("b.mid");
            }
            fatalStop("stopped");
        },
        ExitedWithCode(1), "^stopped\n$");
    EXPECT_THAT(names(), IsEmpty());
}

TEST_F(SuddenEndsDeathTest, MemoryThatDoesNotSufficeIsOnePlainLineOnEachThread)
{
    EXPECT_EXIT(
        {
            beginFile();
            std::thread([] { throw std::bad_alloc(); }).join();
        },
        ExitedWithCode(1), "^The memory does not suffice.\n$");
    EXPECT_THAT(names(), IsEmpty());
}

TEST_F(SuddenEndsDeathTest, AnotherExceptionIsADefect)
{
    EXPECT_EXIT(
        {
            beginFile();
            std::thread([] { throw 1; }).join();
        },
        testing::KilledBySignal(SIGABRT), "");
    EXPECT_THAT(names(), IsEmpty());
}

TEST_F(SuddenEndsDeathTest, ASignalThatTheCallerWantsIgnoredStaysIgnored)
{
    for (const int signal : {SIGINT, SIGTERM, SIGHUP, SIGPIPE, SIGQUIT, SIGXCPU}) {
        EXPECT_EXIT(
            {
                std::signal(signal, SIG_IGN);
                prepareSuddenEnds();
                std::raise(signal);
                _exit(7);
            },
            ExitedWithCode(7), "");
    }
}

TEST_F(SuddenEndsDeathTest, AFileThatGrowsTooLargeIsAFailedWrite)
{
    EXPECT_EXIT(
        {
            beginFile();
            limitFiles(3);
            const bool isWritten = file.write("four", 4);
            _exit(isWritten ? 1 : file.failure());
        },
        ExitedWithCode(EFBIG), "");
}

} // namespace
} // namespace volvelle::test
