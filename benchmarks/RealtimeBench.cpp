#include "MIDISequences/RenderEventPool.h"
#include "MIDISequences/realtime/AUMIDIEventListMixer.h"
#include "MIDISequences/realtime/AUMIDIEventListSorter.h"
#include "MIDISequences/realtime/MatrixSections.h"

#include "base/Console.h"

#include <benchmark/benchmark.h>

#include <cstdint>
#include <ctime>
#include <functional>
#include <memory>
#include <random>

namespace {

using namespace volvelle;

constexpr double blockSeconds = 512.0 / 48000.0; // what a block lasts
constexpr std::int64_t events = 1000;

// Gives back its records when it ends.
struct List {
    AURenderEvent* head = nullptr;

    explicit List(std::int64_t count, unsigned seed)
    {
        std::mt19937 random(seed);
        for (std::int64_t i = 0; i < count; ++i) {
            const std::uint8_t bytes[]{static_cast<std::uint8_t>(0x90 + random() % 16),
                                       static_cast<std::uint8_t>(random() % 128), 100};
            const AUMIDIEvent record{.eventSampleTime = static_cast<std::int64_t>(random() % 512),
                                     .eventType = AURenderEventMIDI,
                                     .length = 3};
            AURenderEvent* const event = makeRenderEvent(record, bytes);
            event->head.next = head;
            head = event;
        }
    }

    ~List() { releaseRenderEvents(head); }

    List(const List&) = delete;
    List& operator=(const List&) = delete;
};

// Tells how much of the time of a block the work takes.
template <typename Work>
void asShareOfABlock(benchmark::State& state, Work work)
{
    work();
    const std::clock_t began = std::clock();
    for (auto _ : state) {
        benchmark::DoNotOptimize(work());
    }
    const double took = static_cast<double>(std::clock() - began) / CLOCKS_PER_SEC; // s of the processor
    state.counters["% of a block"] = took / static_cast<double>(state.iterations()) / blockSeconds * 100.0;
}

void sortThousandEvents(benchmark::State& state)
{
    const List list(events, 1);
    AUMIDIEventListSorter sorter;
    asShareOfABlock(state, [&] { return sorter.sortEvents(list.head, 100); });
}

BENCHMARK(sortThousandEvents)->Unit(benchmark::kMicrosecond);

// A sorted list, as a host gives it.
void sortThousandSortedEvents(benchmark::State& state)
{
    const List list(events, 1);
    AUMIDIEventListSorter before;
    const AURenderEvent* const sorted = before.sortEvents(list.head);
    AUMIDIEventListSorter sorter;
    asShareOfABlock(state, [&] { return sorter.sortEvents(sorted, 100); });
}

BENCHMARK(sortThousandSortedEvents)->Unit(benchmark::kMicrosecond);

void mixThousandEvents(benchmark::State& state)
{
    const List first(events / 2, 1);
    const List second(events / 2, 2);
    AUMIDIEventListMixer mixer;
    asShareOfABlock(state, [&] { return mixer.mixEvents(first.head, second.head, 100, 50, true); });
}

BENCHMARK(mixThousandEvents)->Unit(benchmark::kMicrosecond);

constexpr int frames = 512; // of a block
constexpr int longList = 1'000'000;

// A sequencer with a list of so many events from `first` on, `distance` samples apart.
class LoadedSequencer : public AUMIDISequencer {
public:
    LoadedSequencer(int count, std::int64_t first, std::int64_t distance)
    {
        isLooping = true;
        SequencerFile file;
        for (int i = 0; i < count; ++i) {
            const auto key = static_cast<std::uint8_t>(30 + i / 2 % 64);
            const std::uint8_t bytes[]{static_cast<std::uint8_t>(i % 2 == 0 ? 0x90 : 0x80), key, 100};
            file.fileEvents.push_back(
                std::make_shared<AUMIDIEventEx>(AURenderEventMIDI, bytes, 3, first + i * distance));
        }
        useList(std::make_unique<AUMIDISequencerList>(std::move(file), sequence()));
    }
};

void playBlocks(benchmark::State& state, AUMIDISequencer& sequencer, const std::function<void()>& before)
{
    std::int64_t time = 1;
    sequencer.start(time);
    asShareOfABlock(state, [&] {
        before();
        time += frames;
        return sequencer.process(time, frames);
    });
}

void processWhereNothingIsDue(benchmark::State& state)
{
    LoadedSequencer sequencer(longList, std::int64_t{1} << 50, 1);
    playBlocks(state, sequencer, [] {});
}

BENCHMARK(processWhereNothingIsDue)->Unit(benchmark::kMicrosecond);

// An event at every sample.
void processWhereEverySampleHasAnEvent(benchmark::State& state)
{
    LoadedSequencer sequencer(longList, 0, 1);
    playBlocks(state, sequencer, [] {});
}

BENCHMARK(processWhereEverySampleHasAnEvent)->Unit(benchmark::kMicrosecond);

// The seek counts, too.
void processAfterASeek(benchmark::State& state)
{
    LoadedSequencer sequencer(longList, 0, 20);
    std::mt19937 random(3);
    playBlocks(state, sequencer,
               [&] { sequencer.seekToPosition(static_cast<double>(random() % 1000) / 1000.0); });
}

BENCHMARK(processAfterASeek)->Unit(benchmark::kMicrosecond);

// Hears all lines and keeps none.
class DeafSink : public ConsoleSink {
public:
    void write(std::string_view /*line*/) override {}
};

// 128 cells, and how many events of each are due in every block.
void processMatrix(benchmark::State& state)
{
    const auto due = static_cast<int>(state.range(0));
    MatrixSections matrix;
    DeafSink sink;
    ConsoleSink* const sinkBefore = console().setSink(&sink);
    for (const auto& section : matrix.sections) {
        for (auto& cell : section->tracks) {
            cell = std::make_shared<LoadedSequencer>(due + 1, 0, 0);
            cell->getEventList().back()->pEvent()->eventSampleTime = std::int64_t{1} << 50;
        }
    }
    asShareOfABlock(state, [&] {
        matrix.deallocateRealtimeEventListHead(matrix.process(1, frames));
        return matrix.allEvents.size();
    });
    console().setSink(sinkBefore);
}

BENCHMARK(processMatrix)->Arg(50)->Arg(1000)->Unit(benchmark::kMicrosecond);

} // namespace

BENCHMARK_MAIN();
