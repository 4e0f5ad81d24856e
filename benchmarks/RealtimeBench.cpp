#include "MIDISequences/RenderEventPool.h"
#include "MIDISequences/realtime/AUMIDIEventListMixer.h"
#include "MIDISequences/realtime/AUMIDIEventListSorter.h"

#include <benchmark/benchmark.h>

#include <cstdint>
#include <ctime>
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

} // namespace

BENCHMARK_MAIN();
