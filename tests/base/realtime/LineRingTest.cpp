#include "base/realtime/LineRing.h"

#include <gtest/gtest.h>

#include <atomic>
#include <map>
#include <memory>
#include <thread>
#include <vector>

namespace volvelle {
namespace {

using Lines = std::vector<std::string>;

Lines popAll(LineRing& ring)
{
    Lines lines;
    std::string line;
    while (ring.pop(line)) {
        lines.push_back(line);
    }
    return lines;
}

TEST(LineRing, LinesComeOutInTheirOrder)
{
    LineRing ring;
    EXPECT_TRUE(ring.push("one ", "and more"));
    EXPECT_TRUE(ring.push("two"));
    EXPECT_TRUE(ring.push("", ""));
    EXPECT_EQ(popAll(ring), (Lines{"one and more", "two", ""}));
    EXPECT_EQ(popAll(ring), Lines{});
    EXPECT_EQ(ring.takeMissed(), 0U);
}

TEST(LineRing, ALineIsCutOffAtItsLongest)
{
    LineRing ring;
    const std::string longest(LineRing::longest, 'x');
    ring.push(longest);
    ring.push(longest + "y");
    ring.push(longest, "y");
    ring.push("a", longest);
    EXPECT_EQ(popAll(ring), (Lines{longest, longest, longest, "a" + longest.substr(1)}));
}

TEST(LineRing, WhatFindsNoRoomIsCountedAndWhatWasInStays)
{
    LineRing ring;
    for (std::size_t round = 0; round < 3; ++round) {
        Lines expected;
        for (std::size_t i = 0; i < LineRing::capacity; ++i) {
            expected.push_back(std::to_string(round * 1000 + i));
            ASSERT_TRUE(ring.push(expected.back()));
        }
        EXPECT_FALSE(ring.push("too much"));
        EXPECT_FALSE(ring.push("too much"));
        EXPECT_EQ(ring.takeMissed(), 2U);
        EXPECT_EQ(ring.takeMissed(), 0U);
        EXPECT_EQ(popAll(ring), expected);
    }
}

TEST(LineRing, OneLineOutMakesRoomForOneMore)
{
    LineRing ring;
    for (std::size_t i = 0; i < LineRing::capacity; ++i) {
        ring.push("x");
    }
    std::string line;
    ASSERT_TRUE(ring.pop(line));
    EXPECT_TRUE(ring.push("last"));
    EXPECT_FALSE(ring.push("too much"));
    EXPECT_EQ(popAll(ring).back(), "last");
}

TEST(LineRing, LinesOfManyThreadsArriveWholeAndInTheOrderOfTheirThread)
{
    constexpr int threadCount = 4;
    constexpr int linesOfEach = 5'000;
    const auto ring = std::make_unique<LineRing>();
    std::atomic<int> running{threadCount};
    std::atomic<std::size_t> refused{0};
    std::vector<std::thread> threads;
    for (int number = 0; number < threadCount; ++number) {
        threads.emplace_back([&, number] {
            for (int i = 0; i < linesOfEach; ++i) {
                const bool isIn =
                    ring->push(std::string(1, static_cast<char>('a' + number)), std::to_string(i));
                refused += isIn ? 0 : 1;
            }
            --running;
        });
    }
    Lines lines;
    while (running > 0) {
        const Lines more = popAll(*ring);
        lines.insert(lines.end(), more.begin(), more.end());
    }
    for (std::thread& thread : threads) {
        thread.join();
    }
    const Lines more = popAll(*ring);
    lines.insert(lines.end(), more.begin(), more.end());
    std::map<char, int> last{{'a', -1}, {'b', -1}, {'c', -1}, {'d', -1}};
    for (const std::string& line : lines) {
        const int number = std::stoi(line.substr(1));
        ASSERT_GT(number, last.at(line.front()));
        last.at(line.front()) = number;
    }
    EXPECT_EQ(lines.size() + refused, std::size_t{threadCount * linesOfEach});
    EXPECT_EQ(ring->takeMissed(), refused);
}

} // namespace
} // namespace volvelle
