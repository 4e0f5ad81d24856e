#include "tests/MIDISequences/realtime/SequencerProbe.h"
#include "tests/support/Stops.h"

#include <gtest/gtest.h>

#include <functional>
#include <limits>

namespace volvelle::test {

namespace {

constexpr std::int64_t earliest = std::numeric_limits<std::int64_t>::min();
constexpr std::int64_t latest = std::numeric_limits<std::int64_t>::max();
constexpr std::int64_t half = std::int64_t{1} << 62;

// Sums that do not fit, each where it is made: what goes before, what stops, and the lines that it has told.
struct Overflow {
    const char* what;
    std::function<void(SequencerProbe&)> prepare;
    std::function<void(SequencerProbe&)> stop;
    std::vector<std::string> lines;
};

// A sequencer that plays controllers at those times from `start` on.
std::function<void(SequencerProbe&)> playing(std::vector<std::int64_t> times, std::int64_t start)
{
    return [times = std::move(times), start](SequencerProbe& sequencer) {
        StampedEvents list;
        for (const std::int64_t time : times) {
            list.push_back({time, {0xB0, 7, 1}});
        }
        sequencer.load(list);
        sequencer.startClean(start);
    };
}

std::function<void(SequencerProbe&)> cycle(std::int64_t time, int frames)
{
    return [=](SequencerProbe& sequencer) { sequencer.process(time, frames); };
}

std::function<void(SequencerProbe&)> plainCycle(std::int64_t time, int frames)
{
    return [=](SequencerProbe& sequencer) { sequencer.processInternal(time, frames); };
}

std::function<void(SequencerProbe&)> both(std::function<void(SequencerProbe&)> first,
                                          std::function<void(SequencerProbe&)> second)
{
    return [first = std::move(first), second = std::move(second)](SequencerProbe& sequencer) {
        first(sequencer);
        second(sequencer);
    };
}

void expectStops(const std::vector<Overflow>& overflows)
{
    for (const Overflow& overflow : overflows) {
        SCOPED_TRACE(overflow.what);
        SequencerProbe sequencer;
        overflow.prepare(sequencer);
        EXPECT_STOP(overflow.stop(sequencer), arithmeticMessage, overflow.lines);
    }
}

TEST(AUMIDISequencerDeathTest, ACycleWhoseTimesDoNotFitIsAFatalStop)
{
    const auto sendTwo = [](SequencerProbe& sequencer) {
        sequencer.sendEvent(0, 0x90, 60, 1);
        sequencer.sendEvent(0, 0x90, 61, 1);
    };
    const auto toTheEnd = [](SequencerProbe& sequencer) { sequencer.seekToPosition(1.0); };
    const auto toTheFirst = [](SequencerProbe& sequencer) {
        sequencer.seekToPosition(1.0);
        sequencer.seekToEvent(0);
    };
    const auto backwards = [](SequencerProbe& sequencer) {
        sequencer.process(1, 4096);
        sequencer.seekToEvent(0);
        sequencer.tempoRate = -1.0;
    };
    const auto looping = [](SequencerProbe& sequencer) { sequencer.isLooping = true; };
    expectStops({
        {"the place of what was sent", sendTwo, cycle(latest, 0), {}},
        {"the time since the start", playing({0, 1000}, earliest + 1), cycle(1, 512), {}},
        {"the end of the block in the file",
         both(playing({0, latest - 1023}, 1), toTheEnd),
         cycle(1, 2048),
         {}},
        {"how far an event is", both(playing({earliest, 1000}, 1), toTheFirst), cycle(1, 512), {}},
        {"the time of an event", both(playing({0, half}, 1), backwards), cycle(latest - 1000, 512), {}},
        {"the end of the block", playing({0, 1000}, 1), cycle(latest - 100, 512), {}},
        {"the start of the next pass",
         both(playing({100}, latest - 10), looping),
         cycle(1000, 512),
         {"AUMIDISequencer::seek(0.0)"}},
        {"how late an event is",
         both(playing({-half, half}, 1), toTheFirst),
         cycle(1, 512),
         {"sequencer position: 0",
          "AUMIDISequencer::WARNING: A MIDI events is out of the timeframe (in the past) and will be "
          "scheduled now.",
          "expected frame time: -9223372036854775807", "allowed frame min: 1"}},
    });
}

TEST(AUMIDISequencerDeathTest, APlainCycleWhoseTimesDoNotFitIsAFatalStop)
{
    expectStops({
        {"the time since the start", playing({0, 1000}, earliest + 1), plainCycle(1, 0), {}},
        {"the end of the block", playing({0, 1000}, 1), plainCycle(latest - 10, 512), {}},
        {"the time of an event", playing({100, 1000}, latest - 10), plainCycle(1000, 512), {}},
    });
}

TEST(AUMIDISequencerDeathTest, AnOperationWhoseTimesDoNotFitIsAFatalStop)
{
    const auto pauseFrom = [](std::int64_t from, std::int64_t to) {
        return [=](SequencerProbe& sequencer) {
            sequencer.process(from, 1);
            sequencer.pause();
            sequencer.process(to, 1);
        };
    };
    const auto stop = [](SequencerProbe& sequencer) { sequencer.stop(); };
    const auto goOn = [](SequencerProbe& sequencer) { sequencer._continue(); };
    const auto generate = [](SequencerProbe& sequencer) { sequencer.generateRealtimeEvent(0, 0x90, 1, 1); };
    const auto ask = [](SequencerProbe& sequencer) { sequencer.getCurrentTimeInSeconds(); };
    const std::vector<std::string> told{"AUMIDISequencer::continue()"};
    expectStops({
        {"a second from now", cycle(latest - 100, 1), stop, {}},
        {"how long it paused", both(playing({0, 1000}, 1), pauseFrom(earliest + 1, 1000)), goOn, told},
        {"the start behind a pause", both(playing({0, 1000}, latest - 10), pauseFrom(0, 100)), goOn, told},
        {"the next block", cycle(latest - 100, 512), generate, {}},
        {"the time since the start", both(playing({}, earliest + 1), cycle(1000, 1)), ask, {}},
    });
}

TEST(AUMIDISequencerDeathTest, ARateThatIsNoFiniteNumberStopsTheProgramAtTheNextStop)
{
    for (const double rate :
         {std::numeric_limits<double>::infinity(), std::numeric_limits<double>::quiet_NaN(), 1e300}) {
        SequencerProbe sequencer;
        sequencer.setSamplerate(rate);
        EXPECT_STOP(sequencer.stop(), conversionMessage);
    }
}

TEST(AUMIDISequencerDeathTest, DataThatNoRecordHoldsAreAFatalStop)
{
    for (const std::size_t size : {65'536U, 65'539U, 131'072U}) {
        SequencerProbe sequencer;
        const Bytes data(size, 1);
        EXPECT_STOP(sequencer.sendEvent(data), conversionMessage);
    }
    SequencerProbe sequencer;
    sequencer.sendEvent(Bytes(65'535, 1));
    EXPECT_EQ(sequencer.realtimeEvents.bytes(0).size(), 65'535U);
}

} // namespace

} // namespace volvelle::test
