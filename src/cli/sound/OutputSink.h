#pragma once

#include "base/realtime/AudioSink.h"
#include "services/audiodevice/AudioOutput.h"

#include <string>

namespace volvelle {

// The sound device, or the silent clock in its place, as the sink of an engine. Opening does not wait: the
// first pull comes from the device, so that the first note is heard whole, or from the clock once it is known
// that there is no device, or none came in time. [main thread]
class OutputSink : public AudioSink {
public:
    OutputSink();

    ~OutputSink() override { output.stop(); }

    bool open(AudioSource& source, std::string& error) override { return output.start(source, error); }

    void close() override { output.stop(); }

    // Empty until it is known what plays.
    std::string description() const override;

    // True while the clock stands in for the device.
    bool isLost() const override { return !output.isAudible(); }

private:
    AudioOutput output;
};

} // namespace volvelle
