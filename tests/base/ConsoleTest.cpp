#include "base/Console.h"
#include "base/MainQueue.h"
#include "base/realtime/LineRing.h"
#include "tests/support/ConsoleCapture.h"
#include "tests/support/RealtimeGuard.h"

#include <gtest/gtest.h>

#include <thread>

namespace volvelle {
namespace {

using test::ConsoleCapture;
using Lines = std::vector<std::string>;

// A value that counts how often it is written into a text.
struct Counted {
    int& count;
};

std::string text(const Counted& value)
{
    return std::to_string(++value.count);
}

TEST(Console, TheTextsOfAllArgumentsAreOneLine)
{
    ConsoleCapture capture;
    int count = 0;
    safeprint("safe: ", 1, " ", Counted{count});
    debugprint("debug: ", true, " ", Counted{count});
    directPrint("direct: ", 0.5, " ", Counted{count});
    EXPECT_EQ(capture.take(), (Lines{"safe: 1 1", "debug: true 2", "direct: 0.5 3"}));
}

TEST(Console, WithoutASinkNoTextIsBuilt)
{
    int count = 0;
    safeprint("nobody hears ", Counted{count});
    debugprint("nobody hears ", Counted{count});
    directPrint("nobody hears ", Counted{count});
    EXPECT_EQ(count, 0);
}

TEST(Console, ASilenceDropsWhatIsWrittenInIt)
{
    ConsoleCapture capture;
    int count = 0;
    safeprint("before");
    {
        const ConsoleSilence silence;
        safeprint("within ", Counted{count});
        directPrint("within ", Counted{count});
    }
    safeprint("after");
    EXPECT_EQ(capture.take(), (Lines{"before", "after"}));
    EXPECT_EQ(count, 0);
}

TEST(Console, SafeprintOfAnEmptyMessagePrintsAnEmptyLine)
{
    ConsoleCapture capture;
    safeprint("");
    EXPECT_EQ(capture.take(), Lines{""});
}

TEST(Console, LoggedLinesReachTheConsoleInOrderAndAfterTheCall)
{
    struct Spy : ConsoleSink {
        void write(std::string_view line) override { lines.emplace_back(line); }

        Lines lines;
    } spy;

    ConsoleSink* before = console().setSink(&spy);
    safeprint("one");
    debugprint("two");
    EXPECT_TRUE(spy.lines.empty());
    mainQueue().drain();
    EXPECT_EQ(spy.lines, (Lines{"one", "two"}));
    console().setSink(before);
}

TEST(Console, ADirectPrintWritesTheWaitingLinesFirstAndRunsNoClosure)
{
    ConsoleCapture capture;
    bool ran = false;
    safeprint("logged");
    mainQueue().post([&ran] { ran = true; });
    safeprint("logged too");
    directPrint("direct");
    EXPECT_FALSE(ran);
    EXPECT_EQ(capture.take(), (Lines{"logged", "logged too", "direct"}));
    EXPECT_TRUE(ran);
}

TEST(Console, LinesOfAnotherThreadArriveInTheirOrder)
{
    ConsoleCapture capture;
    std::thread other([] {
        for (int i = 0; i < 100; ++i) {
            safeprint(std::to_string(i));
        }
    });
    other.join();
    const Lines lines = capture.take();
    ASSERT_EQ(lines.size(), 100U);
    for (int i = 0; i < 100; ++i) {
        EXPECT_EQ(lines[static_cast<std::size_t>(i)], std::to_string(i));
    }
}

TEST(Console, LinesOfARenderingThreadArriveWhereTheQueueIsDrained)
{
    ConsoleCapture capture;
    std::thread renderer([] {
        realtimeprint("one");
        realtimeprint("two: ", "more");
    });
    renderer.join();
    EXPECT_EQ(capture.take(), (Lines{"one", "two: more"}));
}

TEST(Console, LinesOfARenderingThreadThatFindNoRoomAreCounted)
{
    ConsoleCapture capture;
    for (std::size_t i = 0; i < LineRing::capacity + 3; ++i) {
        realtimeprint("line");
    }
    Lines expected(LineRing::capacity, "line");
    expected.emplace_back("Lines of the rendering threads that found no room: 3");
    EXPECT_EQ(capture.take(), expected);
    EXPECT_EQ(capture.take(), Lines{});
}

TEST(Console, ALineOfARenderingThreadTakesNoLockAndNoMemory)
{
    ConsoleCapture capture;
    {
        const test::RealtimeGuard guard;
        for (std::size_t i = 0; i < LineRing::capacity + 1; ++i) {
            realtimeprint("two: ", "more");
        }
    }
    EXPECT_EQ(capture.take().size(), LineRing::capacity + 1);
}

TEST(Console, ADirectPrintWritesTheLinesOfRenderingThreadsFirst)
{
    ConsoleCapture capture;
    realtimeprint("rendered");
    safeprint("logged");
    directPrint("direct");
    EXPECT_EQ(capture.take(), (Lines{"logged", "rendered", "direct"}));
}

TEST(Console, WithoutASinkNoLineOfARenderingThreadIsKept)
{
    realtimeprint("nobody hears this");
    ConsoleCapture capture;
    EXPECT_TRUE(capture.take().empty());
}

TEST(Console, WithoutASinkNothingIsQueued)
{
    safeprint("nobody hears this");
    ConsoleCapture capture;
    EXPECT_TRUE(capture.take().empty());
}

TEST(Console, StandardOutputGetsTheLineAndItsEnd)
{
    StandardOutputSink sink;
    testing::internal::CaptureStdout();
    sink.write("a\nline\x1B");
    EXPECT_EQ(testing::internal::GetCapturedStdout(), "a\nline?\n");
}

TEST(MainQueue, DrainingIsReentrantAndRunsWhatClosuresPost)
{
    std::vector<int> order;
    mainQueue().post([&order] {
        order.push_back(1);
        mainQueue().post([&order] { order.push_back(3); });
        mainQueue().drain();
        order.push_back(4);
    });
    mainQueue().post([&order] { order.push_back(2); });
    mainQueue().drain();
    EXPECT_EQ(order, (std::vector<int>{1, 2, 3, 4}));
}

TEST(MainQueue, EveryPostingCallsTheWakeUpHook)
{
    int calls = 0;
    mainQueue().setWakeUp([&calls] { ++calls; });
    mainQueue().post([] {});
    mainQueue().postLine("x");
    mainQueue().setWakeUp({});
    mainQueue().post([] {});
    EXPECT_EQ(calls, 2);
    mainQueue().drain();
}

TEST(MainQueue, ClosuresOfManyThreadsAllRun)
{
    int sum = 0;
    std::vector<std::thread> threads;
    for (int t = 0; t < 4; ++t) {
        threads.emplace_back([&sum] {
            for (int i = 0; i < 250; ++i) {
                mainQueue().post([&sum] { ++sum; });
            }
        });
    }
    for (std::thread& thread : threads) {
        thread.join();
    }
    mainQueue().drain();
    EXPECT_EQ(sum, 1000);
}

} // namespace
} // namespace volvelle
