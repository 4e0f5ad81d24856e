#include "base/SerialQueue.h"

#include <gtest/gtest.h>

#include <thread>
#include <vector>

namespace volvelle {
namespace {

TEST(SerialQueue, GivesWhatItsBodyGivesAndKeepsItsLabel)
{
    const SerialQueue queue("a label");
    EXPECT_EQ(queue.label, "a label");
    EXPECT_EQ(queue.sync([] { return 7; }), 7);
    int place = 1;
    queue.sync([&place]() -> int& { return place; }) = 2;
    EXPECT_EQ(place, 2);
}

TEST(SerialQueue, RunsABodyOnItsCallersThread)
{
    const SerialQueue queue("label");
    EXPECT_EQ(queue.sync([] { return std::this_thread::get_id(); }), std::this_thread::get_id());
}

TEST(SerialQueue, RunsBodiesOfManyThreadsOneAfterTheOther)
{
    const SerialQueue queue("label");
    constexpr int rounds = 2000;
    int count = 0;
    std::vector<std::thread> threads(4);
    for (std::thread& thread : threads) {
        thread = std::thread([&] {
            for (int i = 0; i < rounds; ++i) {
                queue.sync([&count] { ++count; });
            }
        });
    }
    for (std::thread& thread : threads) {
        thread.join();
    }
    EXPECT_EQ(count, 4 * rounds);
}

} // namespace
} // namespace volvelle
