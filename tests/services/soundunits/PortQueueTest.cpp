#include "services/soundunits/PortQueue.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <deque>
#include <random>
#include <thread>

namespace volvelle {
namespace {

using Bytes = std::vector<std::uint8_t>;
using Moment = PortQueue::Moment;

constexpr std::size_t cost = 16; // bytes of a message besides its own

Moment moment(int number)
{
    return Moment(Moment::duration(number));
}

std::vector<Bytes> popAll(PortQueue& queue)
{
    std::vector<Bytes> all;
    Moment due;
    Bytes message;
    while (queue.pop(due, message)) {
        all.push_back(message);
    }
    return all;
}

TEST(PortQueue, GivesBackMomentAndMessageOverManyRounds)
{
    PortQueue queue(1000);
    std::minstd_rand random(7);
    std::deque<std::pair<int, Bytes>> waiting;
    for (int i = 0; i < 10'000; ++i) {
        const Bytes message(1 + random() % 300, static_cast<std::uint8_t>(random() % 128));
        if (random() % 2 == 0 && queue.push(moment(i), message)) {
            waiting.emplace_back(i, message);
        } else if (Moment due; true) {
            Bytes got;
            ASSERT_EQ(queue.pop(due, got), !waiting.empty());
            if (!waiting.empty()) {
                ASSERT_EQ(due, moment(waiting.front().first));
                ASSERT_EQ(got, waiting.front().second);
                waiting.pop_front();
            }
        }
    }
}

TEST(PortQueue, TakesWhatFillsItToTheLastByteAndNothingMore)
{
    PortQueue queue(cost + 10 + cost + 3);
    EXPECT_FALSE(queue.push(moment(0), Bytes(2 * cost + 14 - cost, 1)));
    EXPECT_TRUE(queue.push(moment(0), Bytes(10, 1)));
    EXPECT_FALSE(queue.push(moment(0), Bytes(4, 2)));
    EXPECT_TRUE(queue.push(moment(0), Bytes(3, 3)));
    EXPECT_FALSE(queue.push(moment(0), Bytes(1, 4)));
    EXPECT_EQ(popAll(queue), (std::vector<Bytes>{Bytes(10, 1), Bytes(3, 3)}));
    EXPECT_TRUE(queue.push(moment(0), Bytes(cost + 13, 5)));
}

TEST(PortQueue, AMessageWithoutBytesIsRefused)
{
    PortQueue queue(100);
    EXPECT_FALSE(queue.push(moment(0), {}));
    EXPECT_EQ(popAll(queue), std::vector<Bytes>{});
}

TEST(PortQueue, TheEndOfWhatBeganIsNeverRefused)
{
    PortQueue queue(10'000);
    std::minstd_rand random(3);
    std::vector<Bytes> owed;
    int refused = 0;
    for (int i = 0; i < 20'000; ++i) {
        const auto key = static_cast<std::uint8_t>(random() % 128);
        const bool isPedal = random() % 8 == 0;
        const bool isNew = owed.end() == std::find(owed.begin(), owed.end(), Bytes{0xB0, 64, 0});
        const Bytes on = isPedal ? Bytes{0xB0, 64, 127} : Bytes{0x90, key, 100};
        const bool isIn = queue.push(moment(i), on);
        refused += isIn ? 0 : 1;
        if (isIn && (!isPedal || isNew)) {
            owed.push_back(isPedal ? Bytes{0xB0, 64, 0} : Bytes{0x80, key, 0});
        }
        queue.push(moment(i), Bytes(1 + random() % 200, 0x55));
        while (!owed.empty() && random() % 3 == 0) {
            ASSERT_TRUE(queue.push(moment(i), owed.back()));
            owed.pop_back();
        }
        if (random() % 500 == 0) {
            popAll(queue);
        }
    }
    EXPECT_GT(refused, 1000);
    for (const Bytes& end : owed) {
        ASSERT_TRUE(queue.push(moment(0), end));
    }
}

TEST(PortQueue, TheEndOfAllFindsRoomInAFullQueueWhereSomethingSounds)
{
    PortQueue queue(cost + 3 + cost + 3);
    ASSERT_TRUE(queue.push(moment(0), Bytes{0x90, 60, 1}));
    ASSERT_FALSE(queue.push(moment(0), Bytes{0xB0, 7, 1}));
    queue.pushEnd(moment(0));
    queue.pushEnd(moment(0));
    EXPECT_EQ(popAll(queue), (std::vector<Bytes>{{0x90, 60, 1}, {}}));
}

TEST(PortQueue, HandsAllFromOneThreadToAnother)
{
    PortQueue queue(500);
    constexpr int count = 20'000;
    std::thread pusher([&queue] {
        for (int i = 0; i < count; ++i) {
            const Bytes message(1 + static_cast<std::size_t>(i) % 50, static_cast<std::uint8_t>(i % 128));
            while (!queue.push(moment(i), message)) {
                std::this_thread::yield();
            }
        }
    });
    Moment due;
    Bytes message;
    for (int i = 0; i < count; ++i) {
        while (!queue.pop(due, message)) {
            std::this_thread::yield();
        }
        EXPECT_EQ(due, moment(i));
        EXPECT_EQ(message, Bytes(1 + static_cast<std::size_t>(i) % 50, static_cast<std::uint8_t>(i % 128)));
    }
    pusher.join();
}

} // namespace
} // namespace volvelle
