#include "base/RunLoop.h"
#include "base/MainQueue.h"
#include "tests/support/HandClock.h"

#include <gtest/gtest.h>

#include <chrono>
#include <memory>
#include <string>
#include <thread>

namespace volvelle {
namespace {

using test::HandClock;

TEST(RunLoop, ATimerFiresAtEachIntervalAndNotBefore)
{
    HandClock clock;
    int fired = 0;
    const auto target = std::make_shared<int>(0);
    mainRunLoop().schedule(0.5, target, [&fired] { ++fired; });
    clock.advance(0.25);
    EXPECT_EQ(fired, 0);
    clock.advance(0.25);
    EXPECT_EQ(fired, 1);
    clock.advance(0.5);
    EXPECT_EQ(fired, 2);
}

TEST(RunLoop, ALateTimerFiresOnceAndKeepsItsGrid)
{
    HandClock clock;
    int fired = 0;
    const auto target = std::make_shared<int>(0);
    const auto timer = mainRunLoop().schedule(1.0, target, [&fired] { ++fired; });
    clock.advance(3.5);
    EXPECT_EQ(fired, 1);
    EXPECT_EQ(timer->nextFire(), 104.0);
    clock.advance(0.5);
    EXPECT_EQ(fired, 2);
}

TEST(RunLoop, ATimerEndsWithItsTarget)
{
    HandClock clock;
    int fired = 0;
    auto target = std::make_shared<int>(0);
    const auto timer = mainRunLoop().schedule(1.0, target, [&fired] { ++fired; });
    target.reset();
    clock.advance(2.0);
    EXPECT_EQ(fired, 0);
    EXPECT_FALSE(timer->isValid());
    EXPECT_FALSE(mainRunLoop().nextFire());
}

TEST(RunLoop, AnInvalidatedTimerIsSilentEvenWithinItsOwnTurn)
{
    HandClock clock;
    int fired = 0;
    const auto target = std::make_shared<int>(0);
    std::shared_ptr<Timer> second;
    mainRunLoop().schedule(1.0, target, [&] { second->invalidate(); });
    second = mainRunLoop().schedule(1.0, target, [&fired] { ++fired; });
    clock.advance(1.0);
    EXPECT_EQ(fired, 0);
}

TEST(RunLoop, ATurnRunsWhatItsTimersPost)
{
    HandClock clock;
    bool ran = false;
    const auto target = std::make_shared<int>(0);
    mainRunLoop().schedule(1.0, target, [&ran] { mainQueue().post([&ran] { ran = true; }); });
    clock.advance(1.0);
    EXPECT_TRUE(ran);
}

TEST(RunLoop, ATurnRunsWhatWasPostedBeforeTheTimersThatAreDue)
{
    HandClock clock;
    std::string order;
    const auto target = std::make_shared<int>(0);
    mainRunLoop().schedule(1.0, target, [&order] { order += "timer "; });
    mainQueue().post([&order] { order += "post "; });
    clock.advance(1.0);
    EXPECT_EQ(order, "post timer ");
}

// A clock that counts how often it is asked.
class AskedClock : public Clock {
public:
    double now() const override
    {
        ++asked;
        return std::chrono::duration<double>(std::chrono::steady_clock::now().time_since_epoch()).count();
    }

    mutable int asked = 0;
};

TEST(RunLoop, RunningRestsBetweenTimersOnceItWasWoken)
{
    const AskedClock clock;
    RunLoop loop(clock);
    const auto target = std::make_shared<int>(0);
    const auto timer = loop.schedule(0.02, target, [&loop] { loop.stop(); });
    mainQueue().post([] { mainQueue().post([] {}); });
    loop.run();
    EXPECT_LT(clock.asked, 50);
    timer->invalidate();
}

TEST(RunLoop, RunningEndsWithAStopThatWasPosted)
{
    bool ran = false;
    std::thread other([&ran] {
        mainQueue().post([&ran] {
            ran = true;
            mainRunLoop().stop();
        });
    });
    mainRunLoop().run();
    other.join();
    EXPECT_TRUE(ran);
}

TEST(RunLoop, RunningFiresTimersOfTheSteadyClock)
{
    int fired = 0;
    const auto target = std::make_shared<int>(0);
    const auto timer = mainRunLoop().schedule(0.001, target, [&fired] {
        if (++fired == 3) {
            mainRunLoop().stop();
        }
    });
    mainRunLoop().run();
    EXPECT_EQ(fired, 3);
    timer->invalidate();
}

} // namespace
} // namespace volvelle
