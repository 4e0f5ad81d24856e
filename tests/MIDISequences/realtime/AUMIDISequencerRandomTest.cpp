#include "tests/MIDISequences/realtime/NaiveSequencer.h"
#include "tests/MIDISequences/realtime/SequencerProbe.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <algorithm>
#include <array>
#include <random>

namespace volvelle::test {

namespace {

class Draws {
public:
    explicit Draws(std::uint64_t seed) : engine(seed) {}

    int operator()(int lower, int upper) { return std::uniform_int_distribution<int>(lower, upper)(engine); }

private:
    std::mt19937_64 engine;
};

Bytes randomMessage(Draws& draw)
{
    const auto byte = [&](int lower, int upper) { return static_cast<std::uint8_t>(draw(lower, upper)); };
    switch (draw(0, 9)) {
    case 0:
        return {byte(0xB0, 0xBF), byte(0, 127), byte(0, 127)};
    case 1:
        return {byte(0xC0, 0xDF), byte(0, 127)};
    case 2: {
        Bytes exclusive(static_cast<std::size_t>(draw(1, 300)), 0x11);
        exclusive.front() = 0xF0;
        return exclusive;
    }
    case 3:
        return {0xFD, byte(0, 127), 0, 1, 2, 3, 4};
    case 4:
        return {byte(0, 255), byte(0, 127), byte(0, 127)};
    default:
        return {byte(0x80, 0x9F), byte(60, 64), byte(0, 2)};
    }
}

StampedEvents randomList(Draws& draw, int length, int count)
{
    StampedEvents list(static_cast<std::size_t>(count));
    for (Stamped& event : list) {
        event = {draw(0, length), randomMessage(draw)};
    }
    std::ranges::stable_sort(list, {}, &Stamped::frame);
    return list;
}

// A sequencer and the naive one under the same hands.
class Pair {
public:
    SequencerProbe fast;
    NaiveSequencer naive;

    void load(const StampedEvents& list)
    {
        fast.load(list);
        naive.load(list);
    }

    void start(std::int64_t time)
    {
        fast.start(time);
        naive.start(time);
    }

    void seek(double value)
    {
        fast.seekToPosition(value);
        naive.seek(value);
    }

    void setLooping(bool isLooping)
    {
        fast.isLooping = isLooping;
        naive.isLooping = isLooping;
    }

    void setTempo(double factor)
    {
        fast.setTempoFactor(factor);
        naive.tempo = factor * fast.getRate();
    }

    void setRate(double rate)
    {
        fast.setSamplerate(rate);
        naive.rate = rate;
    }

    void operate(Draws& draw, int length);
    void expectSame(std::int64_t time, int frames, bool isInternal = false);
};

void Pair::operate(Draws& draw, int length)
{
    const auto channel = static_cast<std::uint8_t>(draw(0, 15));
    const int event = draw(-1, static_cast<int>(naive.list.size()) + 1);
    const double share = draw(-10, 110) / 100.0;
    switch (draw(0, 11)) {
    case 0:
        return seek(share);
    case 1:
        fast.seekToEvent(event);
        return naive.seekToEvent(event);
    case 2:
        fast.pause();
        return naive.pause();
    case 3:
        fast._continue();
        return naive.goOn();
    case 4:
        fast.stop();
        return naive.stop();
    case 5:
    case 6:
        return start(naive.sampleTime + draw(0, 100));
    case 7:
        fast.sendEvent({0xF0, channel, 3, 4, 5});
        return naive.send({0xF0, channel, 3, 4, 5});
    case 8:
        fast.mute(channel);
        std::erase(naive.channels, channel);
        return;
    case 9:
        fast.unmuteAll();
        naive.channels = {0, 1, 2, 3, 4, 5, 6, 7, 8, 9, 10, 11, 12, 13, 14, 15};
        fast.statusFilter.assign(static_cast<std::size_t>(draw(0, 1)), 0xB0);
        naive.kinds.assign(fast.statusFilter.begin(), fast.statusFilter.end());
        return;
    case 10:
        return setLooping(draw(0, 1) == 1);
    default:
        return load(randomList(draw, length, draw(0, 60)));
    }
}

void Pair::expectSame(std::int64_t time, int frames, bool isInternal)
{
    const StampedEvents played = isInternal ? fast.playInternal(time, frames) : fast.play(time, frames);
    ASSERT_EQ(played, isInternal ? naive.processInternal(time, frames) : naive.process(time, frames));
    ASSERT_EQ(fast.getCurrentPositionInSamples(), naive.positionV);
    ASSERT_EQ(fast.getCurrentEventIndex(), naive.index);
    ASSERT_EQ(fast.isPlaying(), !naive.stopped);
    ASSERT_EQ(fast.runningNotes.size(), naive.running.size());
    ASSERT_EQ(fast.listener->calls, naive.calls);
    fast.listener->calls.clear();
    naive.calls.clear();
}

void expectSpecial(Pair& pair)
{
    StampedEvents kept;
    while (const auto event = pair.fast.specialEvents.take()) {
        kept.push_back({event->event().eventSampleTime, event->array()});
    }
    StampedEvents wanted = pair.naive.special;
    wanted.erase(wanted.begin(), wanted.end() - static_cast<std::ptrdiff_t>(kept.size()));
    EXPECT_EQ(kept, wanted);
    EXPECT_EQ(kept.size(), std::min<std::size_t>(512, pair.naive.special.size()));
}

constexpr std::array<int, 5> blocks{1, 37, 64, 512, 0}; // 0: any

int blockOf(Draws& draw, int block)
{
    return block > 0 ? block : draw(1, 700);
}

} // namespace

TEST(AUMIDISequencerRandom, PlaysWhatTheNaiveOnePlaysAtAllRatesBlocksAndTempos)
{
    for (const double rate : {44100.0, 48000.0, 96000.0}) {
        for (const int block : blocks) {
            for (const double tempo : {0.1, 1.0, 2.0, 10.0}) {
                Draws draw(static_cast<std::uint64_t>(rate + block));
                Pair pair;
                pair.setRate(rate);
                pair.setLooping(true);
                pair.load(randomList(draw, 150 * std::max(block, 1) + 50, 60));
                pair.setTempo(tempo);
                pair.start(1000);
                std::int64_t time = 1000;
                for (int cycle = 0; cycle < 100; ++cycle) {
                    const int frames = blockOf(draw, block);
                    ASSERT_NO_FATAL_FAILURE(pair.expectSame(time, frames)) << rate << block << tempo << cycle;
                    time += frames;
                }
                expectSpecial(pair);
            }
        }
    }
}

TEST(AUMIDISequencerRandom, PlaysWhatTheNaiveOnePlaysUnderAnyOperations)
{
    for (std::uint64_t seed = 0; seed < 60; ++seed) {
        Draws draw(seed);
        Pair pair;
        const int block = blocks.at(seed % blocks.size());
        const int length = 4 * std::max(block, 100);
        pair.load(randomList(draw, length, 60));
        std::int64_t time = 0;
        for (int cycle = 0; cycle < 300; ++cycle) {
            if (draw(0, 5) == 0) {
                pair.operate(draw, length);
            }
            if (draw(0, 20) == 0) {
                pair.setTempo(draw(1, 100) / 10.0);
            }
            const int frames = blockOf(draw, block);
            ASSERT_NO_FATAL_FAILURE(pair.expectSame(time, frames, seed % 4 == 3)) << seed << ' ' << cycle;
            time += frames;
        }
        expectSpecial(pair);
    }
}

TEST(AUMIDISequencerRandom, LoopsAndSeeksAtEveryBoundaryOfABlock)
{
    constexpr int block = 16;
    for (std::int64_t last = 0; last <= 3 * block; ++last) {
        for (std::int64_t to = 0; to <= last; ++to) {
            Pair pair;
            pair.load({{0, {0x90, 60, 1}}, {last / 2, {0x80, 60, 1}}, {last, {0xB0, 7, 1}}});
            pair.setLooping(true);
            pair.start(1);
            for (std::int64_t time = 1; time < 10 * block; time += block) {
                if (time == 1 + 3 * block) {
                    pair.seek(last == 0 ? 1.0 : static_cast<double>(to) / static_cast<double>(last));
                }
                ASSERT_NO_FATAL_FAILURE(pair.expectSame(time, block)) << last << ' ' << to << ' ' << time;
            }
        }
    }
}

} // namespace volvelle::test
