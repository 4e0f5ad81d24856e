#include "cli/sound/RenderCommand.h"

#include "base/Text.h"
#include "cli/sound/SoundGraph.h"
#include "services/audiodevice/AudioFileWriter.h"
#include "services/audiograph/AVAudioSequencer.h"
#include "services/audiograph/AVMusicTrack.h"

#include <algorithm>
#include <array>
#include <cmath>
#include <thread>

namespace volvelle {

namespace {

constexpr int blockFrames = 512;
constexpr double sampleRate = AudioSource::sampleRate;
constexpr float silence = 1.0e-4F;    // -80 dB
constexpr double quietSeconds = 0.25; // of silence that end a tail
constexpr double longestTail = 30.0;  // seconds

class Rendering {
public:
    Rendering(AVAudioEngine& from, AudioFileWriter& to) : engine(from), writer(to) {}

    // One block into the file; false with a line in `error`.
    bool renderBlock(std::string& error)
    {
        if (engine.renderOffline(blockFrames, left.data(), right.data()) != noErr) {
            error = "The audio engine could not render.";
            return false;
        }
        return writer.write(left.data(), right.data(), blockFrames, error);
    }

    bool isSilent() const
    {
        const auto isQuiet = [](float sample) { return std::fabs(sample) < silence; };
        return std::ranges::all_of(left, isQuiet) && std::ranges::all_of(right, isQuiet);
    }

private:
    AVAudioEngine& engine;
    AudioFileWriter& writer;
    std::array<float, blockFrames> left{};
    std::array<float, blockFrames> right{};
};

double lengthOf(const AVAudioSequencer& sequencer)
{
    double seconds = 0.0;
    for (const auto& track : sequencer.tracks()) {
        seconds = std::max(seconds, track->lengthInSeconds);
    }
    return seconds;
}

bool renderMusic(Rendering& rendering, double seconds, CommandOutput& output, std::string& error)
{
    const auto blocks = static_cast<std::int64_t>(std::ceil(seconds * sampleRate / blockFrames));
    int shown = -1;
    for (std::int64_t block = 0; block < blocks; ++block) {
        if (!rendering.renderBlock(error)) {
            return false;
        }
        const int percent = static_cast<int>((block + 1) * 100 / blocks);
        if (percent != shown) {
            shown = percent;
            output.progress(percent, 100);
        }
    }
    return true;
}

bool renderTail(Rendering& rendering, std::string& error)
{
    const auto quietBlocks = static_cast<int>(quietSeconds * sampleRate / blockFrames);
    const auto mostBlocks = static_cast<int>(longestTail * sampleRate / blockFrames);
    int quiet = 0;
    for (int block = 0; block < mostBlocks && quiet < quietBlocks; ++block) {
        if (!rendering.renderBlock(error)) {
            return false;
        }
        quiet = rendering.isSilent() ? quiet + 1 : 0;
    }
    return true;
}

int coresOf(const RenderOptions& options)
{
    const int all = std::max(1, static_cast<int>(std::thread::hardware_concurrency()));
    return options.cores > 0 ? options.cores : all;
}

} // namespace

int runRender(const RenderOptions& options, CommandOutput& output)
{
    MusicSequence check;
    NewMusicSequence(check);
    const OSStatus read = MusicSequenceFileLoad(check, options.file, kMusicSequenceFile_MIDIType,
                                                kMusicSequenceLoadSMF_PreserveTracks);
    if (read != noErr) {
        return output.failure(readFailure(options.file, read));
    }
    std::string error;
    AudioFileWriter writer;
    if (!writer.open(options.out, {options.rate, SampleForm::integer24}, error)) {
        return output.failure(error);
    }
    SoundGraph graph(coresOf(options));
    AVAudioSequencer sequencer(graph.engine);
    if (!graph.connectSynthesizer(options.bank, error) ||
        !sequencer.loadFromURL(options.file, AVAudioSequencer::channelsToTracks, error)) {
        return output.failure(error);
    }
    for (const auto& track : sequencer.tracks()) {
        track->setDestinationAudioUnit(graph.instrument);
    }
    graph.engine->enableManualRenderingMode(blockFrames);
    sequencer.prepareToPlay();
    if (!graph.engine->start(error) || !sequencer.start(error)) {
        return output.failure(error);
    }
    Rendering rendering(*graph.engine, writer);
    if (!renderMusic(rendering, lengthOf(sequencer), output, error) || !renderTail(rendering, error)) {
        return output.failure(error);
    }
    const double seconds = static_cast<double>(writer.length()) / sampleRate;
    if (!writer.finish(error)) {
        return output.failure(error);
    }
    output.remark(
        concat("Wrote '", options.out.string(), "': ", std::round(seconds * 10.0) / 10.0, " seconds."));
    return exitDone;
}

} // namespace volvelle
