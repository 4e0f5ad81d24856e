#pragma once

#include "base/realtime/AudioSink.h"

#include <memory>
#include <mutex>
#include <string>

namespace volvelle {

class RtAudioStream;

// The system's default output: PulseAudio, which PipeWire answers too, else JACK, else a bare ALSA card, the
// last only while isSoundCardFree(). Asks for stereo at 48,000 Hz and converts where the device wants
// something else.
class RtAudioSink : public AudioSink {
public:
    RtAudioSink();
    ~RtAudioSink() override;
    RtAudioSink(const RtAudioSink&) = delete;
    RtAudioSink& operator=(const RtAudioSink&) = delete;

    // Sets what the sound libraries read from the environment, unless it is set, and drops their chatter from
    // standard error, and nothing else.
    // [main] Before the first sink is made, and before other threads that read the environment.
    static void prepare();

    Result<> open(AudioSource& source) override;
    void close() override;
    std::string description() const override;
    bool isAudible() const override;

private:
    mutable std::mutex mutex;
    std::unique_ptr<RtAudioStream> stream; // guarded by mutex
};

} // namespace volvelle
