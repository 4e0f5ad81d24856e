#include "services/audiodevice/RtAudioSink.h"

#include "services/audiodevice/LibraryLines.h"
#include "services/audiodevice/RtAudioStream.h"
#include "services/audiodevice/SoundServers.h"

#include <alsa/asoundlib.h>
#include <cstdlib>
#include <iostream>
#include <utility>

namespace volvelle {

namespace {

void ignoreALSA(const char* /*file*/, int /*line*/, const char* /*function*/, int /*error*/,
                const char* /*format*/, ...)
{
}

} // namespace

RtAudioSink::RtAudioSink() = default;

RtAudioSink::~RtAudioSink()
{
    close();
}

void RtAudioSink::prepare()
{
    setenv("PULSE_LATENCY_MSEC", "30", 0);
    setenv("JACK_NO_START_SERVER", "1", 0);
    snd_lib_error_set_handler(ignoreALSA);
    static const LibraryLines libraryLines(std::cerr);
}

Result<> RtAudioSink::open(AudioSource& source)
{
    close();
    std::string reason = "No sound server and no sound card was found.";
    for (const RtAudio::Api api : {RtAudio::LINUX_PULSE, RtAudio::UNIX_JACK, RtAudio::LINUX_ALSA}) {
        if (api == RtAudio::LINUX_ALSA && !isSoundCardFree()) {
            continue;
        }
        auto opened = std::make_unique<RtAudioStream>(api);
        const Result<> done = opened->open(source);
        if (done) {
            const std::lock_guard lock(mutex);
            stream = std::move(opened);
            return {};
        }
        reason = done.error().empty() ? reason : done.error();
    }
    return failure(reason);
}

void RtAudioSink::close()
{
    std::unique_ptr<RtAudioStream> closing;
    {
        const std::lock_guard lock(mutex);
        closing = std::move(stream);
    }
}

std::string RtAudioSink::description() const
{
    const std::lock_guard lock(mutex);
    return stream ? stream->description() : "";
}

bool RtAudioSink::isAudible() const
{
    const std::lock_guard lock(mutex);
    return stream && !stream->isLost();
}

} // namespace volvelle
