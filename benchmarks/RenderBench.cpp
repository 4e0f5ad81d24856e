#include "Done.h"
#include "audio/SoundGraph.h"
#include "base/Paths.h"
#include "services/audiograph/graph/AVAudioEngine.h"
#include "services/audiograph/graph/AVAudioUnitMIDIInstrument.h"
#include "services/audiograph/graph/AudioUnitCalls.h"
#include "services/audiograph/sequencer/AVAudioSequencer.h"
#include "services/audiograph/sequencer/AVMusicTrack.h"
#include "services/synthesizer/SoundBanks.h"

#include <benchmark/benchmark.h>

#include <array>
#include <optional>
#include <stdexcept>
#include <vector>

namespace {

using namespace volvelle;

constexpr int blockFrames = 512;
constexpr double blockSeconds = blockFrames / 48000.0;

// A running engine with the synthesizer, rendered by hand.
struct Studio {
    Studio()
    {
        setResourcesFolder(VOLVELLE_RESOURCES);
        if (const auto connected = graph.connectSynthesizer(std::nullopt); !connected) {
            throw std::runtime_error(connected.error());
        }
        done(graph.engine->enableManualRenderingMode(blockFrames));
        done(graph.engine->start());
    }

    ~Studio() { graph.engine->stop(); }

    Studio(const Studio&) = delete;
    Studio& operator=(const Studio&) = delete;

    void renderBlock()
    {
        done(graph.engine->renderOffline(blockFrames, left.data(), right.data()));
        benchmark::DoNotOptimize(left.data());
    }

    SoundGraph graph{false};
    std::array<float, blockFrames> left{};
    std::array<float, blockFrames> right{};
};

// The time of a block as a share of what it lasts, where each iteration is one.
benchmark::Counter shareOfCore(const benchmark::State& state)
{
    return {blockSeconds * static_cast<double>(state.iterations()),
            benchmark::Counter::kIsRate | benchmark::Counter::kInvert};
}

// Items are blocks; "core" is the share of one core that the block's time takes in real time.
void voices(benchmark::State& state)
{
    Studio studio;
    const auto unit = studio.graph.instrument->auAudioUnit();
    for (std::uint32_t note = 0; note < static_cast<std::uint32_t>(state.range(0)); ++note) {
        const std::uint32_t channel = note % 8;
        done(MusicDeviceMIDIEvent(unit, 0xC0U | channel, 19, 0, 0)); // an organ holds its level
        done(MusicDeviceMIDIEvent(unit, 0x90U | channel, 36 + note / 8 * 2, 40, 0));
    }
    for (auto _ : state) {
        studio.renderBlock();
    }
    state.counters["voices"] = studio.graph.activeVoices();
    state.counters["core"] = shareOfCore(state);
}

BENCHMARK(voices)->Arg(0)->Arg(32)->Arg(64)->Arg(128);

// A file of 750,000 events, three of four of them controllers.
std::vector<std::uint8_t> longFile()
{
    MusicSequence sequence;
    MusicTrack track;
    std::vector<std::uint8_t> bytes;
    done(NewMusicSequence(sequence));
    done(MusicSequenceNewTrack(sequence, track));
    for (int i = 0; i < 187500; ++i) {
        const double beat = i / 32.0;
        const auto channel = static_cast<std::uint8_t>(i % 16);
        done(MusicTrackNewMIDINoteEvent(track, beat,
                                        {channel, static_cast<std::uint8_t>(36 + i % 60), 90, 0, 0.1F}));
        for (const std::uint8_t number : std::array<std::uint8_t, 3>{1, 11, 74}) {
            const MIDIChannelMessage message{static_cast<std::uint8_t>(0xB0U | channel), number,
                                             static_cast<std::uint8_t>(i % 128), 0};
            done(MusicTrackNewMIDIChannelEvent(track, beat, message));
        }
    }
    done(MusicSequenceFileCreateData(sequence, kMusicSequenceFile_MIDIType, 0, 480, bytes));
    return bytes;
}

// A file of a million exclusives, none of them a reset.
std::vector<std::uint8_t> fileOfExclusives()
{
    constexpr std::uint32_t count = 1'000'000;
    constexpr std::uint32_t size = count * 10 + 4;
    std::vector<std::uint8_t> bytes{'M', 'T', 'h', 'd', 0, 0, 0, 6, 0, 0, 0, 1, 1, 0xE0, 'M', 'T', 'r', 'k'};
    for (const int shift : {24, 16, 8, 0}) {
        bytes.push_back(static_cast<std::uint8_t>(size >> shift));
    }
    for (std::uint32_t i = 0; i < count; ++i) {
        const auto volume = static_cast<std::uint8_t>(i % 128);
        bytes.insert(bytes.end(), {3, 0xF0, 7, 0x7F, 0x7F, 0x04, 0x01, 0x00, volume, 0xF7});
    }
    bytes.insert(bytes.end(), {0, 0xFF, 0x2F, 0x00});
    return bytes;
}

// A block with a jump to another place of a file; "core" is the share of the block's time.
void seekIn(benchmark::State& state, const std::vector<std::uint8_t>& file)
{
    Studio studio;
    AVAudioSequencer sequencer(studio.graph.engine);
    if (const auto loaded = sequencer.loadFromData(file, AVAudioSequencer::channelsToTracks); !loaded) {
        state.SkipWithError(loaded.error().c_str());
        return;
    }
    for (const auto& track : sequencer.tracks()) {
        track->setDestinationAudioUnit(studio.graph.instrument);
    }
    done(sequencer.start());
    double beats = 0.0;
    for (auto _ : state) {
        beats = beats > 5000.0 ? 1.0 : beats + 777.7;
        sequencer.setCurrentPositionInBeats(beats);
        studio.renderBlock();
    }
    state.counters["core"] = shareOfCore(state);
}

void seek(benchmark::State& state)
{
    seekIn(state, longFile());
}

void seekBehindExclusives(benchmark::State& state)
{
    seekIn(state, fileOfExclusives());
}

BENCHMARK(seekBehindExclusives)->Unit(benchmark::kMicrosecond);
BENCHMARK(seek)->Unit(benchmark::kMicrosecond);

// Finding and loading the built-in bank: the largest part of the time to the first sound.
void loadBank(benchmark::State& state)
{
    setResourcesFolder(VOLVELLE_RESOURCES);
    const auto bank = bestInstalledBank();
    if (!bank) {
        state.SkipWithError("there is no sound bank");
        return;
    }
    for (auto _ : state) {
        benchmark::DoNotOptimize(Synthesizer::make(*bank, {}));
    }
}

BENCHMARK(loadBank)->Unit(benchmark::kMillisecond);

} // namespace

BENCHMARK_MAIN();
