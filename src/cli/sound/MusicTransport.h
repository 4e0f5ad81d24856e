#pragma once

#include "base/Result.h"

#include <cstdint>
#include <vector>

namespace volvelle {

// What plays the music of a command: one file, from its start to its end. [main]
class MusicTransport {
public:
    virtual ~MusicTransport() = default;

    // Takes the bytes of a MIDI file, before the engine starts.
    virtual Result<> load(const std::vector<std::uint8_t>& data) = 0;

    virtual Result<> start() = 0; // while the engine runs
    virtual void pause() = 0;
    virtual void goOn() = 0;
    virtual void stop() = 0;

    virtual double position() const = 0; // beats
    virtual bool hasEnded() const = 0;   // by itself
};

} // namespace volvelle
