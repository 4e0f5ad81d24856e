#include "base/realtime/BoundedQueue.h"
#include "base/realtime/Handoff.h"
#include "base/realtime/LatestValue.h"

#include <array>
#include <atomic>
#include <gtest/gtest.h>
#include <thread>

namespace volvelle::test {

namespace {

TEST(BoundedQueue, HoldsAsManyAsItSaysAndKeepsTheirOrder)
{
    BoundedQueue<int> queue(2);
    int value = 0;
    EXPECT_FALSE(queue.pop(value));
    EXPECT_TRUE(queue.push(1));
    EXPECT_TRUE(queue.push(2));
    EXPECT_TRUE(queue.isFull());
    EXPECT_FALSE(queue.push(3));
    EXPECT_TRUE(queue.pop(value));
    EXPECT_EQ(value, 1);
    EXPECT_TRUE(queue.push(4));
    EXPECT_TRUE(queue.pop(value));
    EXPECT_EQ(value, 2);
    EXPECT_TRUE(queue.pop(value));
    EXPECT_EQ(value, 4);
}

TEST(BoundedQueue, AnotherThreadGetsEveryElementInOrder)
{
    BoundedQueue<int> queue(7);
    constexpr int count = 20000;
    std::thread pushing([&] {
        for (int i = 0; i < count;) {
            if (queue.push(i)) {
                ++i;
            } else {
                std::this_thread::yield();
            }
        }
    });
    bool isInOrder = true;
    for (int i = 0; i < count;) {
        int value = -1;
        if (queue.pop(value)) {
            isInOrder = isInOrder && value == i++;
        } else {
            std::this_thread::yield();
        }
    }
    pushing.join();
    EXPECT_TRUE(isInOrder);
}

TEST(LatestValue, TheNewestIsReadAndNothingTwice)
{
    LatestValue<int> value;
    EXPECT_FALSE(value.update());
    value.write(1);
    value.write(2);
    EXPECT_TRUE(value.update());
    EXPECT_EQ(value.read(), 2);
    EXPECT_FALSE(value.update());
    EXPECT_EQ(value.read(), 2);
}

TEST(LatestValue, AnotherThreadNeverSeesHalfAValue)
{
    LatestValue<std::array<long, 8>> value;
    constexpr long count = 20000;
    std::thread writing([&] {
        for (long i = 1; i <= count; ++i) {
            std::array<long, 8> whole{};
            whole.fill(i);
            value.write(whole);
        }
    });
    bool isWhole = true;
    long last = 0;
    while (last < count) {
        value.update();
        const std::array<long, 8>& seen = value.read();
        isWhole = isWhole && seen.front() == seen.back() && seen.front() >= last;
        last = seen.front();
    }
    writing.join();
    EXPECT_TRUE(isWhole);
}

struct CountedObject {
    explicit CountedObject(int& newCount) : count(newCount) { ++count; }

    ~CountedObject() { --count; }

    CountedObject(const CountedObject&) = delete;
    CountedObject& operator=(const CountedObject&) = delete;

    int& count;
};

TEST(Handoff, WhatIsReplacedIsFreedByTheMainThreadOnly)
{
    int living = 0;
    int farewells = 0;
    {
        Handoff<CountedObject> handoff;
        const auto take = [&] {
            return handoff.take([&](CountedObject* before) { farewells += before != nullptr; });
        };
        EXPECT_FALSE(take());
        handoff.publish(std::make_unique<CountedObject>(living));
        handoff.publish(std::make_unique<CountedObject>(living));
        EXPECT_EQ(living, 1); // the first was never seen
        EXPECT_TRUE(take());
        EXPECT_EQ(farewells, 0);
        handoff.publish(std::make_unique<CountedObject>(living));
        EXPECT_TRUE(take());
        EXPECT_EQ(farewells, 1);
        EXPECT_EQ(living, 2);
        handoff.collect();
        EXPECT_EQ(living, 1);
        handoff.publish(std::make_unique<CountedObject>(living));
    }
    EXPECT_EQ(living, 0);
}

} // namespace

} // namespace volvelle::test
