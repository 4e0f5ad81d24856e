#include "Done.h"
#include "base/Paths.h"
#include "inspection/ChordAnalysis.h"
#include "phrases/MIDIClipGenerator.h"
#include "sequence/SequenceFileBytes.h"
#include "services/musicsequence/MusicSequence.h"

#include <benchmark/benchmark.h>

namespace {

using namespace volvelle;

constexpr int blocks = 64; // arrangements in the long sequence that parsing and writing work on

void useLibrary()
{
    setResourcesFolder(VOLVELLE_RESOURCES);
}

std::vector<std::uint8_t> fileOf(const MIDISequence16& sequence)
{
    std::vector<std::uint8_t> bytes;
    done(sequenceFileBytes(sequence.musicSequence, bytes));
    return bytes;
}

std::vector<std::uint8_t> longFile(int& events)
{
    useLibrary();
    MIDIClipGenerator generator;
    const auto sequence = generator.makeArrangementLong(blocks);
    events = 0;
    for (const auto& track : sequence->sequenceNode->tracks) {
        events += track->getEventCount();
    }
    return fileOf(*sequence);
}

// From the call to the bytes of the file: five phrase files, two step generators, chords, mix, sequence,
// bytes.
void arrangement(benchmark::State& state)
{
    useLibrary();
    for (auto _ : state) {
        MIDIClipGenerator generator;
        const auto sequence = generator.makeArrangement(false);
        benchmark::DoNotOptimize(fileOf(*sequence));
    }
}

BENCHMARK(arrangement)->Unit(benchmark::kMillisecond)->Repetitions(9)->ReportAggregatesOnly(true);

void emptyArrangement(benchmark::State& state)
{
    for (auto _ : state) {
        MIDIClipGenerator generator;
        const auto sequence = generator.makeArrangement(true);
        benchmark::DoNotOptimize(fileOf(*sequence));
    }
}

BENCHMARK(emptyArrangement)->Unit(benchmark::kMicrosecond);

// One set of sounding notes against the catalogue.
void chordMatching(benchmark::State& state)
{
    ChordRules& rules = MIDIChordPhrase::chordRules();
    const std::vector<int> notes{57, 60, 64, 67};
    for (auto _ : state) {
        benchmark::DoNotOptimize(rules.findMatches(notes));
    }
    state.SetItemsProcessed(state.iterations());
}

BENCHMARK(chordMatching);

// Items are events; chords of three notes each beat, which never end where the second number is 1.
void findingChords(benchmark::State& state)
{
    const auto events = static_cast<int>(state.range(0));
    std::vector<FoundNote> notes;
    for (int i = 0; i < events / 2; ++i) {
        const double beat = i / 3;
        const auto key = static_cast<std::uint8_t>(60 + i % 3 * 4 + i / 3 % 12);
        notes.push_back({beat, state.range(1) == 1 ? events - beat : 1.0, key, 90, 64, 0});
    }
    for (auto _ : state) {
        benchmark::DoNotOptimize(findChords(notes, events));
    }
    state.SetItemsProcessed(state.iterations() * events);
}

BENCHMARK(findingChords)->ArgsProduct({{10'000, 1'000'000}, {0, 1}})->Unit(benchmark::kMillisecond);

// Items are notes that move.
void chordFollowing(benchmark::State& state)
{
    useLibrary();
    MIDIClipGenerator generator;
    generator.makeArrangement(false);
    MIDIPhraseMixer& mixer = *generator.phraseMixer;
    for (auto _ : state) {
        mixer.polyMeter0->transposeTrackNotes(*mixer.chordTrack);
        mixer.phraseTrack0->transposeTrackNotes(*mixer.chordTrack);
    }
    const auto notes = mixer.polyMeter0->loadedEvents.size() + mixer.phraseTrack0->loadedEvents.size();
    state.SetItemsProcessed(state.iterations() * static_cast<std::int64_t>(notes));
}

BENCHMARK(chordFollowing);

// Items are realtime events.
void flattening(benchmark::State& state)
{
    useLibrary();
    MIDIClipGenerator generator;
    const auto sequence = generator.makeArrangementLong(blocks);
    std::size_t events = 0;
    for (auto _ : state) {
        const auto list = sequence->nodesToAUMIDIEvent(48000.0, 0);
        events = list.size();
        benchmark::DoNotOptimize(list.data());
    }
    state.SetItemsProcessed(state.iterations() * static_cast<std::int64_t>(events));
}

BENCHMARK(flattening);

// Items are notes; bytes are the file's.
void parsing(benchmark::State& state)
{
    int events = 0;
    const auto data = longFile(events);
    for (auto _ : state) {
        MusicSequence sequence;
        done(NewMusicSequence(sequence));
        done(MusicSequenceFileLoadData(sequence, data, kMusicSequenceFile_MIDIType,
                                       kMusicSequenceLoadSMF_ChannelsToTracks));
        benchmark::DoNotOptimize(sequence.get());
    }
    state.SetItemsProcessed(state.iterations() * events);
    state.SetBytesProcessed(state.iterations() * static_cast<std::int64_t>(data.size()));
}

BENCHMARK(parsing);

void writing(benchmark::State& state)
{
    int events = 0;
    const auto data = longFile(events);
    MusicSequence sequence;
    done(NewMusicSequence(sequence));
    done(MusicSequenceFileLoadData(sequence, data, kMusicSequenceFile_MIDIType,
                                   kMusicSequenceLoadSMF_ChannelsToTracks));
    for (auto _ : state) {
        std::vector<std::uint8_t> bytes;
        done(MusicSequenceFileCreateData(sequence, kMusicSequenceFile_MIDIType,
                                         kMusicSequenceFileFlags_EraseFile, 480, bytes));
        benchmark::DoNotOptimize(bytes.data());
    }
    state.SetItemsProcessed(state.iterations() * events);
    state.SetBytesProcessed(state.iterations() * static_cast<std::int64_t>(data.size()));
}

BENCHMARK(writing);

// The yardstick of the run: copying the bytes of a file.
void copying(benchmark::State& state)
{
    int events = 0;
    const auto data = longFile(events);
    for (auto _ : state) {
        std::vector<std::uint8_t> copy = data;
        benchmark::DoNotOptimize(copy.data());
    }
    state.SetBytesProcessed(state.iterations() * static_cast<std::int64_t>(data.size()));
}

BENCHMARK(copying);

} // namespace

BENCHMARK_MAIN();
