#include "cli/sound/PlayCommand.h"

#include "audio/SoundGraph.h"
#include "base/Checked.h"
#include "base/RunLoop.h"
#include "base/Text.h"
#include "cli/sound/EndWish.h"
#include "cli/sound/MusicPlay.h"
#include "cli/sound/PlatformTransport.h"
#include "cli/sound/PortNames.h"
#include "cli/sound/SequencedTransport.h"
#include "cli/sound/SinkNews.h"
#include "inspection/FileDescription.h"
#include "services/audiodevice/AudioOutput.h"
#include "services/audiodevice/MIDIPorts.h"
#include "services/audiodevice/SoundServers.h"
#include "services/files/SafeFile.h"

#include <utility>

namespace volvelle {

namespace {

constexpr double ringOut = 0.5; // seconds between the end of the music and that of the program

void waitFor(double seconds)
{
    const auto held = std::make_shared<int>(0);
    const auto timer = mainRunLoop().schedule(seconds, held, [] { mainRunLoop().stop(); });
    mainRunLoop().run();
    timer->invalidate();
}

// A sound server opens a device at once, and its first pulls fill its buffer: all must be ready by then.
// Anything else takes its time, in which the bank is loaded.
Result<> connect(SoundGraph& graph, const PlayOptions& options)
{
    if (options.port) {
        return graph.connectPort(*options.port);
    }
    Result<> started = isSoundServerRunning() ? Result<>() : graph.engine->start();
    return started ? graph.connectSynthesizer(options.bank) : started;
}

std::shared_ptr<MusicTransport> transportOf(const SoundGraph& graph)
{
    if (graph.sequencedUnit) {
        return std::make_shared<SequencedTransport>(graph.sequencedUnit);
    }
    return PlatformTransport::make(graph.engine, graph.instrument);
}

// With a port the device is but the pace, and no news.
MusicPlay::News newsOf(const PlayOptions& options, const std::shared_ptr<AudioSink>& sink)
{
    const std::string file = required(options.file).string();
    if (options.port) {
        std::string line = concat("Playing '", file, "' through ", *options.port, ".");
        return [line]() mutable { return std::exchange(line, ""); };
    }
    return [news = SinkNews(file, sink)]() mutable { return news.next(); };
}

} // namespace

int runPlay(const PlayOptions& options, CommandOutput& output)
{
    if (options.port == "list") {
        return tellPorts(makeMIDIPorts()->outputNames(), output);
    }
    return runPlay(options, output, std::make_shared<AudioOutput>(AudioOutput::forMusic()));
}

int runPlay(const PlayOptions& options, CommandOutput& output, const std::shared_ptr<AudioSink>& sink)
{
    const std::filesystem::path& file = required(options.file);
    std::vector<std::uint8_t> data;
    FileDescription description;
    OSStatus status = readFile(file, data);
    status = status == noErr ? describeData(data, description) : status;
    if (status != noErr) {
        return output.failure(readFailure(file, status));
    }
    if (description.tracks.empty()) {
        return output.failure(trackFailure(file));
    }
    if (const std::string warning = warningLine(description); !warning.empty()) {
        output.remark(warning);
    }
    SoundGraph graph(true, options.engine == renderEngine);
    Result<> done = graph.engine->setSink(sink);
    done = done ? connect(graph, options) : done;
    if (!done) {
        return output.failure(done.error());
    }
    listenForEndWish();
    const auto play = MusicPlay::make(PlayDisplay(std::move(description)), newsOf(options, sink),
                                      [&output](const std::string& line) { output.remark(line); });
    done = play->run(graph.engine, transportOf(graph), data);
    if (!done) {
        return output.failure(done.error());
    }
    waitFor(ringOut);
    graph.engine->stop();
    return exitDone;
}

} // namespace volvelle
