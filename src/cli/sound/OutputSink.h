#pragma once

#include "services/audiodevice/AudioOutput.h"
#include "services/audiodevice/AudioSink.h"

#include <chrono>

namespace volvelle {

// The sound device, or the silent clock in its place, as the sink of an engine. [main thread]
class OutputSink : public AudioSink {
public:
    ~OutputSink() override { output.stop(); }

    // Waits a little for the device, so that the first note is heard.
    bool open(AudioSource& source, std::string& error) override;

    void close() override { output.stop(); }

    std::string description() const override { return output.description(); }

    bool isLost() const override { return false; }

private:
    static constexpr std::chrono::milliseconds patience{1500};

    AudioOutput output;
};

} // namespace volvelle
