#include "base/MainThread.h"

#include "base/MainQueue.h"
#include "tests/support/Stops.h"

#include <thread>

namespace volvelle::test {

namespace {

void onAnotherThread(void (*call)())
{
    std::thread(call).join();
}

TEST(MainThread, TheThreadThatBeganMayCall)
{
    assertMainThread();
    mainQueue().drain();
}

TEST(MainThreadDeathTest, AnotherThreadIsAFatalStop)
{
    EXPECT_STOP(onAnotherThread(assertMainThread), "This may be called on the main thread only");
    EXPECT_STOP(onAnotherThread([] { mainQueue().drain(); }), "This may be called on the main thread only");
}

} // namespace

} // namespace volvelle::test
