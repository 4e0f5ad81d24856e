#include "services/synthesizer/SynthesizerQueue.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <utility>
#include <vector>

namespace volvelle::test {

namespace {

std::vector<int> drained(SynthesizerQueue& queue)
{
    std::vector<int> first;
    while (!queue.isEmpty()) {
        first.push_back(queue.front().bytes[1]);
        queue.removeFront();
    }
    return first;
}

} // namespace

TEST(SynthesizerQueue, GivesMessagesByOffsetAndThoseOfOneOffsetInTheOrderOfEntry)
{
    SynthesizerQueue queue;
    for (const auto& [offset, number] : {std::pair(5, 1), {0, 2}, {5, 3}, {3, 4}, {0, 5}}) {
        EXPECT_TRUE(queue.add(offset, {0x90, static_cast<std::uint8_t>(number), 0}));
    }
    EXPECT_EQ(drained(queue), (std::vector{2, 5, 4, 1, 3}));
}

TEST(SynthesizerQueue, MovesWhatWaitsNearer)
{
    SynthesizerQueue queue;
    queue.add(700, {0x90, 1, 0});
    queue.advance(512);
    EXPECT_EQ(queue.front().offset, 188);
}

TEST(SynthesizerQueue, RefusesWhatHasNoRoomAndKeepsTheRest)
{
    SynthesizerQueue queue;
    for (std::size_t i = 0; i < SynthesizerQueue::maximumBeginnings; ++i) {
        ASSERT_TRUE(queue.add(0, {0x90, 1, 1}));
    }
    EXPECT_FALSE(queue.add(0, {0x90, 2, 1}));
    while (queue.add(0, {0x80, 1, 0})) {
    }
    EXPECT_FALSE(queue.add(0, {0x90, 1, 0}));
    queue.removeFront();
    EXPECT_TRUE(queue.add(0, {0x90, 3, 0}));
    EXPECT_EQ(drained(queue).size(), SynthesizerQueue::maximumEvents);
}

TEST(SynthesizerQueue, KeepsSystemExclusiveBytesUntilTheyAreTaken)
{
    SynthesizerQueue queue;
    const std::vector<std::uint8_t> one{1, 2, 3};
    const std::vector<std::uint8_t> other{4, 5};
    EXPECT_TRUE(queue.addExclusive(9, one));
    EXPECT_TRUE(queue.addExclusive(4, other));
    EXPECT_TRUE(std::ranges::equal(queue.exclusive(queue.front()), other));
    queue.removeFront();
    EXPECT_TRUE(std::ranges::equal(queue.exclusive(queue.front()), one));
    queue.removeFront();
    EXPECT_TRUE(queue.addExclusive(0, std::vector<std::uint8_t>(SynthesizerQueue::maximumExclusiveBytes)));
    EXPECT_FALSE(queue.addExclusive(0, one));
    EXPECT_FALSE(queue.addExclusive(0, {}));
}

} // namespace volvelle::test
