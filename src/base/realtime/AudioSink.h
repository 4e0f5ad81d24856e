#pragma once

#include "base/Result.h"
#include "base/realtime/AudioSource.h"

#include <string>

namespace volvelle {

// Takes audio from a source and brings it somewhere, with a thread and a pace of its own. Converts rate and
// channels where its device wants others.
class AudioSink {
public:
    virtual ~AudioSink() = default;

    // Begins to pull from `source`, which must live until close(). Fails where that is not
    // possible; nothing is pulled then. [main, worker]
    virtual Result<> open(AudioSource& source) = 0;

    // Ends pulling: no call into the source is under way once it returns. May be called more than once.
    // [main, worker]
    virtual void close() = 0;

    // "PulseAudio: Speakers at 44100 Hz"; empty until it is known. Valid while open. [main, worker]
    virtual std::string description() const = 0;

    // True while what it pulls is heard: not of a device that was lost, nor of the silent clock. [any]
    virtual bool isAudible() const = 0;
};

} // namespace volvelle
