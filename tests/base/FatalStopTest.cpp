#include "base/FatalStop.h"
#include "base/Console.h"

#include <gtest/gtest.h>

#include <cstdio>
#include <cstdlib>

namespace volvelle {
namespace {

TEST(FatalStopDeathTest, TheMessageStandsAloneOnStandardErrorAndTheProgramAborts)
{
    EXPECT_EXIT(fatalStop("No files found in 'x'"), testing::KilledBySignal(SIGABRT),
                "^No files found in 'x'\n$");
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

TEST(FatalStopDeathTest, LogLinesThatWaitAreWrittenBeforeTheEnd)
{
    struct ErrorSink : ConsoleSink {
        void write(std::string_view line) override
        {
            std::fprintf(stderr, "log: %.*s\n", static_cast<int>(line.size()), line.data());
        }
    };

    EXPECT_DEATH(
        {
            ErrorSink sink;
            console().setSink(&sink);
            safeprint("waiting");
            fatalStop("the end");
        },
        "^the end\nlog: waiting\n$");
}

TEST(FatalStop, SettingTheFinalStepGivesTheOneBefore)
{
    const FinalStep mine = [] {};
    EXPECT_EQ(setFinalStep(mine), nullptr);
    EXPECT_EQ(setFinalStep(nullptr), mine);
}

} // namespace
} // namespace volvelle
