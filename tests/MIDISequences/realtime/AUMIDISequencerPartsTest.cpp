#include "tests/MIDISequences/realtime/SequencerProbe.h"

#include "MIDISequences/realtime/AUMIDISequencerLine.h"
#include "base/Text.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <atomic>
#include <cmath>
#include <limits>
#include <random>
#include <thread>

namespace volvelle::test {

namespace {

using testing::ElementsAre;

std::string lineOf(double value)
{
    AUMIDISequencerLine line;
    line.append(value);
    return std::string(line.view());
}

AUMIDIEvent recordOf(std::int64_t time, std::uint16_t length)
{
    AUMIDIEvent record;
    record.eventSampleTime = time;
    record.eventType = AURenderEventMIDI;
    record.length = length;
    return record;
}

} // namespace

TEST(AUMIDISequencerLine, WritesFloatingPointAsTextDoes)
{
    for (const double value :
         {0.0, -0.0, 1.0, -1.5, 0.1, 0.30000000000000004, 120.0, 1e-4, 9.9e-5, 1e15, 9.5e15, 1e16, 1e-300,
          1e300, 123456789.125, std::numeric_limits<double>::infinity(),
          -std::numeric_limits<double>::infinity(), std::numeric_limits<double>::quiet_NaN()}) {
        EXPECT_EQ(lineOf(value), text(value));
    }
    std::mt19937_64 draw(7);
    std::uniform_real_distribution<double> mantissa(-10.0, 10.0);
    std::uniform_int_distribution<int> exponent(-20, 20);
    for (int i = 0; i < 20'000; ++i) {
        const double value = mantissa(draw) * std::pow(10.0, exponent(draw));
        ASSERT_EQ(lineOf(value), text(value));
    }
}

TEST(AUMIDISequencerLine, IsCutOffWhereItIsTooLong)
{
    AUMIDISequencerLine line;
    line.append(std::string(230, 'a'));
    line.append(std::numeric_limits<std::int64_t>::min());

    EXPECT_EQ(line.view(), std::string(230, 'a') + "-922337203");
}

TEST(AUMIDISequencerEvents, KeepsAllBytesAndTheOrder)
{
    AUMIDISequencerEvents events(4);
    const Bytes bytes{1, 2, 3, 4, 5};
    EXPECT_TRUE(events.push(recordOf(7, 5), bytes.data()));
    EXPECT_TRUE(events.push(recordOf(8, 2), bytes.data()));
    EXPECT_TRUE(events.push(recordOf(9, 0), bytes.data()));
    EXPECT_EQ(events.size(), 3U);
    EXPECT_EQ(events.bytes(0), bytes);
    EXPECT_EQ(events[1].eventSampleTime, 8);

    AURenderEvent* const first = events.pop();
    EXPECT_THAT(stampedOf(first), ElementsAre(Stamped{7, bytes}));
    releaseRenderEvents(first);
    EXPECT_THAT(events.take()->array(), ElementsAre(1, 2));
    EXPECT_EQ(events.take()->event().eventSampleTime, 9);
    EXPECT_EQ(events.take(), nullptr);
    EXPECT_EQ(events.pop(), nullptr);
    EXPECT_TRUE(events.empty());
}

TEST(AUMIDISequencerEvents, DropsTheNewestOrTheOldestWhereItIsFull)
{
    AUMIDISequencerEvents events(2);
    const Bytes bytes{1, 2, 3, 4};
    for (std::int64_t time = 0; time < 3; ++time) {
        EXPECT_EQ(events.push(recordOf(time, 4), bytes.data()), time < 2);
    }
    EXPECT_EQ(events.dropped, 1U);
    events.pushOverOldest(recordOf(3, 4), bytes.data());
    EXPECT_EQ(events.dropped, 2U);

    EXPECT_EQ(events[0].eventSampleTime, 1);
    EXPECT_EQ(events[1].eventSampleTime, 3);
    events.clear();
    EXPECT_TRUE(events.empty());
}

TEST(AUMIDISequencerEvents, OfLargeRecordsTheOldestGoWithWhatIsBeforeThem)
{
    AUMIDISequencerEvents events(8, 2);
    const Bytes bytes(129, 7);
    for (std::int64_t time = 0; time < 4; ++time) {
        events.pushOverOldest(recordOf(time, 129), bytes.data());
        events.pushOverOldest(recordOf(time, 128), bytes.data());
    }
    EXPECT_EQ(events.dropped, 3U);
    EXPECT_EQ(events.size(), 5U);
    EXPECT_EQ(events.take()->event().eventSampleTime, 1);
    EXPECT_EQ(events.take()->array(), bytes);
    events.pushOverOldest(recordOf(4, 129), bytes.data());
    EXPECT_EQ(events.dropped, 3U);
    EXPECT_EQ(events.size(), 4U);
    EXPECT_EQ(events.bytes(3), bytes);
    EXPECT_TRUE(events.push(recordOf(5, 129), bytes.data()));
}

TEST(AUMIDISequencerEvents, LosesNothingBetweenSeveralThreads)
{
    AUMIDISequencerEvents events(64);
    constexpr int count = 20'000;
    std::atomic<int> senders{2};
    const auto send = [&](std::uint8_t who) {
        for (int i = 0; i < count;) {
            const Bytes bytes{who, 2, 3, 4};
            i += events.push(recordOf(i, i % 2 == 0 ? 4 : 1), bytes.data()) ? 1 : 0;
        }
        --senders;
    };
    std::thread a([&] { send(0); });
    std::thread b([&] { send(1); });
    std::array<std::int64_t, 2> next{};
    bool isInOrder = true;
    while (senders > 0 || !events.empty()) {
        AURenderEvent* const record = events.pop();
        if (record != nullptr) {
            isInOrder = isInOrder && record->MIDI.eventSampleTime == next.at(record->MIDI.data[0])++;
            releaseRenderEvents(record);
        }
    }
    a.join();
    b.join();

    EXPECT_TRUE(isInOrder);
    EXPECT_THAT(next, ElementsAre(count, count));
}

} // namespace volvelle::test
