// `volvelle-sound` with a watch on its sink: tells the milliseconds from VOLVELLE_BENCH_START, microseconds
// of the system's clock, to the first frame of a play that is not silent, and ends. It plays into the silent
// clock, or into the sound device where VOLVELLE_BENCH_SINK is "device".
#include "cli/CommandLine.h"
#include "cli/sound/PlayCommand.h"
#include "cli/sound/RenderCommand.h"
#include "services/audiodevice/AudioOutput.h"
#include "services/audiodevice/SilentClockSink.h"

#include <algorithm>
#include <atomic>
#include <chrono>
#include <csignal>
#include <cstdint>
#include <cstdio>
#include <cstdlib>
#include <string_view>

namespace volvelle {
namespace {

std::int64_t microsecondsNow()
{
    const auto now = std::chrono::system_clock::now().time_since_epoch();
    return std::chrono::duration_cast<std::chrono::microseconds>(now).count();
}

// Passes a source on, and notes when it first sounds.
class WatchedSink : public AudioSink, private AudioSource {
public:
    explicit WatchedSink(std::unique_ptr<AudioSink> watched) : sink(std::move(watched)) {}

    Result<> open(AudioSource& from) override
    {
        source = &from;
        return sink->open(*this);
    }

    void close() override { sink->close(); }

    std::string description() const override { return sink->description(); }

    bool isAudible() const override { return sink->isAudible(); }

    std::atomic<std::int64_t> firstSound{0}; // microseconds of the system's clock

private:
    void render(float* left, float* right, int frames) noexcept override
    {
        source->render(left, right, frames);
        const bool isSilent = std::all_of(left, left + frames, [](float sample) { return sample == 0.0F; });
        if (!isSilent && firstSound == 0) {
            firstSound = microsecondsNow();
            std::raise(SIGTERM);
        }
    }

    std::unique_ptr<AudioSink> sink;
    AudioSource* source = nullptr;
};

int watchedPlay(const PlayOptions& options, CommandOutput& output)
{
    const char* start = std::getenv("VOLVELLE_BENCH_START");
    const char* kind = std::getenv("VOLVELLE_BENCH_SINK");
    std::unique_ptr<AudioSink> inner = std::make_unique<SilentClockSink>();
    if (kind != nullptr && std::string_view(kind) == "device") {
        inner = std::make_unique<AudioOutput>(AudioOutput::forMusic());
    }
    const auto sink = std::make_shared<WatchedSink>(std::move(inner));
    const int status = runPlay(options, output, sink);
    if (status != exitDone) {
        return status;
    }
    if (start == nullptr || sink->firstSound == 0) {
        return output.failure("Nothing sounded, or VOLVELLE_BENCH_START is not set.");
    }
    std::printf("%.1f\n", static_cast<double>(sink->firstSound - std::atoll(start)) / 1000.0);
    return status;
}

} // namespace
} // namespace volvelle

int main(int argc, char** argv)
{
    return volvelle::runCommandLine(argc, argv,
                                    {.play = volvelle::watchedPlay, .render = volvelle::runRender});
}
