#include "base/FatalStop.h"
#include "base/Console.h"

#include <gtest/gtest.h>

#include <cstdio>
#include <cstdlib>
#include <thread>

namespace volvelle {
namespace {

TEST(FatalStopDeathTest, TheMessageStandsAloneOnStandardErrorAndTheProgramAborts)
{
    EXPECT_EXIT(fatalStop("No files found in 'x'"), testing::KilledBySignal(SIGABRT),
                "^No files found in 'x'\n$");
}

TEST(FatalStopDeathTest, TheMessageReachesTheTerminalWithoutControlCharacters)
{
    EXPECT_EXIT(fatalStop("No files found in '\x1B[31m\xFF'"), testing::KilledBySignal(SIGABRT),
                "^No files found in '\\?\\[31m\xC3\xBF'\n$");
}

TEST(FatalStopDeathTest, TheFinalStepDecidesHowTheProgramEnds)
{
    EXPECT_EXIT(
        {
            setFinalStep([] { std::_Exit(1); });
            fatalStop("broken");
        },
        testing::ExitedWithCode(1), "^broken\n$");
}

struct ErrorSink : ConsoleSink {
    void write(std::string_view line) override
    {
        std::fprintf(stderr, "log: %.*s\n", static_cast<int>(line.size()), line.data());
    }
};

TEST(FatalStopDeathTest, LogLinesThatWaitAreWrittenBeforeTheEnd)
{
    EXPECT_DEATH(
        {
            ErrorSink sink;
            console().setSink(&sink);
            safeprint("waiting");
            fatalStop("the end");
        },
        "^the end\nlog: waiting\n$");
}

TEST(FatalStopDeathTest, LogLinesThatWaitAreWrittenByAStopOffTheMainThreadToo)
{
    EXPECT_DEATH(
        {
            ErrorSink sink;
            console().setSink(&sink);
            safeprint("waiting");
            std::thread([] {
                safeprint("waiting too");
                fatalStop("the end");
            }).join();
        },
        "^the end\nlog: waiting\nlog: waiting too\n$");
}

TEST(FatalStopDeathTest, LinesOfRenderingThreadsThatWaitAreWrittenBehindTheLog)
{
    const auto stop = [] {
        realtimeprint("rendering ", "too");
        safeprint("waiting");
        fatalStop("the end");
    };
    ErrorSink sink;
    ConsoleSink* const before = console().setSink(&sink);
    EXPECT_DEATH(stop(), "^the end\nlog: waiting\nlog: rendering too\n$");
    EXPECT_DEATH(std::thread(stop).join(), "^the end\nlog: waiting\nlog: rendering too\n$");
    console().setSink(before);
}

TEST(FatalStop, SettingTheFinalStepGivesTheOneBefore)
{
    const FinalStep mine = [] {};
    EXPECT_EQ(setFinalStep(mine), nullptr);
    EXPECT_EQ(setFinalStep(nullptr), mine);
}

} // namespace
} // namespace volvelle
