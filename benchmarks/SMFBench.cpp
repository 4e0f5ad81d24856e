#include "Done.h"
#include "services/musicsequence/MusicSequence.h"

#include <benchmark/benchmark.h>

namespace {

using namespace volvelle;

constexpr int notes = 40'000;

MusicTrack trackOfNotes(MusicSequence& sequence)
{
    MusicTrack track;
    done(NewMusicSequence(sequence));
    done(MusicSequenceNewTrack(sequence, track));
    for (int i = 0; i < notes; ++i) {
        done(MusicTrackNewMIDINoteEvent(track, i, {0, 60, 100, 0, 1.0F}));
    }
    return track;
}

// Times `edit` on a track of its own each time.
template <typename Edit>
void onNotes(benchmark::State& state, Edit edit)
{
    for (auto _ : state) {
        state.PauseTiming();
        MusicSequence sequence;
        const MusicTrack track = trackOfNotes(sequence);
        state.ResumeTiming();
        edit(track);
    }
    state.SetItemsProcessed(state.iterations() * notes);
}

// Deletes every note but one by a span for each, from the front.
void clearOneByOne(benchmark::State& state)
{
    onNotes(state, [](const MusicTrack& track) {
        for (int i = 0; i < notes - 1; ++i) {
            done(MusicTrackClear(track, i, i + 1));
        }
    });
}

BENCHMARK(clearOneByOne)->Unit(benchmark::kMillisecond);

// The same from the middle on, each time the note in the middle.
void clearTheMiddle(benchmark::State& state)
{
    onNotes(state, [](const MusicTrack& track) {
        for (int i = 1; i < notes - 1; ++i) {
            const int place = notes / 2 + (i % 2 == 0 ? i / 2 : -(i / 2));
            done(MusicTrackClear(track, place, place + 1));
        }
    });
}

BENCHMARK(clearTheMiddle)->Unit(benchmark::kMillisecond);

void clearAtOnce(benchmark::State& state)
{
    onNotes(state, [](const MusicTrack& track) { done(MusicTrackClear(track, 0.0, notes - 1)); });
}

BENCHMARK(clearAtOnce)->Unit(benchmark::kMillisecond);

void deleteByIterator(benchmark::State& state)
{
    for (auto _ : state) {
        state.PauseTiming();
        MusicSequence sequence;
        const MusicTrack track = trackOfNotes(sequence);
        MusicEventIterator iterator;
        done(NewMusicEventIterator(track, iterator));
        state.ResumeTiming();
        while (MusicEventIteratorDeleteEvent(iterator) == noErr) {
        }
    }
    state.SetItemsProcessed(state.iterations() * notes);
}

BENCHMARK(deleteByIterator)->Unit(benchmark::kMillisecond);

// Cuts the first beat each time: what stands after it moves.
void cutOneByOne(benchmark::State& state)
{
    onNotes(state, [](const MusicTrack& track) {
        for (int i = 0; i < notes - 1; ++i) {
            done(MusicTrackCut(track, 0.0, 1.0));
        }
    });
}

BENCHMARK(cutOneByOne)->Unit(benchmark::kMillisecond);

// The bytes of the notes as a file, and back.
void load(benchmark::State& state)
{
    MusicSequence sequence;
    std::vector<std::uint8_t> bytes;
    trackOfNotes(sequence);
    done(MusicSequenceFileCreateData(sequence, kMusicSequenceFile_MIDIType, 0, 480, bytes));
    for (auto _ : state) {
        MusicSequence loaded;
        done(NewMusicSequence(loaded));
        done(MusicSequenceFileLoadData(loaded, bytes, kMusicSequenceFile_MIDIType,
                                       static_cast<MusicSequenceLoadFlags>(state.range(0))));
        benchmark::DoNotOptimize(loaded);
    }
    state.SetItemsProcessed(state.iterations() * notes);
}

BENCHMARK(load)->Arg(0)->Arg(1)->ArgName("channelsToTracks")->Unit(benchmark::kMicrosecond);

} // namespace

BENCHMARK_MAIN();
