#include "cli/sound/PlayCommand.h"

#include "base/Checked.h"
#include "base/RunLoop.h"
#include "base/Text.h"
#include "cli/FileDescription.h"
#include "cli/sound/MusicPlay.h"
#include "cli/sound/OutputSink.h"
#include "cli/sound/SoundGraph.h"
#include "services/audiodevice/MIDIPorts.h"
#include "services/files/SafeFile.h"

#include <csignal>
#include <utility>

namespace volvelle {

namespace {

constexpr double ringOut = 0.5; // seconds between the end of the music and that of the program

int listPorts(CommandOutput& output)
{
    std::string error;
    const auto names = makeMIDIPorts()->outputNames(error);
    if (!error.empty()) {
        return output.failure(error);
    }
    for (const std::string& name : names) {
        output.result(name);
    }
    if (names.empty()) {
        output.remark("No other program has a MIDI port open.");
    }
    return exitDone;
}

void waitFor(double seconds)
{
    const auto held = std::make_shared<int>(0);
    const auto timer = mainRunLoop().schedule(seconds, held, [] { mainRunLoop().stop(); });
    mainRunLoop().run();
    timer->invalidate();
}

void onSignal(int /*signal*/)
{
    endMusicPlay();
}

} // namespace

int runPlay(const PlayOptions& options, CommandOutput& output)
{
    if (options.port == "list") {
        return listPorts(output);
    }
    const std::filesystem::path& file = required(options.file);
    std::vector<std::uint8_t> data;
    FileDescription description;
    OSStatus status = readFile(file, data);
    status = status == noErr ? describeData(data, description) : status;
    if (status != noErr) {
        return output.failure(readFailure(file, status));
    }
    std::string error;
    SoundGraph graph;
    const bool isConnected = options.port ? graph.connectPort(*options.port, error)
                                          : graph.connectSynthesizer(options.bank, error);
    const auto sink = std::make_shared<OutputSink>();
    if (!isConnected || !graph.engine->setSink(sink, error) || !graph.engine->start(error)) {
        return output.failure(error);
    }
    output.remark(
        concat("Playing '", file.string(), "' through ", options.port.value_or(sink->description()), "."));
    std::signal(SIGINT, onSignal);
    std::signal(SIGTERM, onSignal);
    if (!MusicPlay::make(PlayDisplay(std::move(description)))->run(graph.engine, graph.instrument, data)) {
        return output.failure("The music could not be started.");
    }
    waitFor(ringOut);
    graph.engine->stop();
    return exitDone;
}

} // namespace volvelle
