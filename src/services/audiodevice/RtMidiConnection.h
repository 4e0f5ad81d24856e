#pragma once

#include "services/audiodevice/SoundServers.h"

#include <RtMidi.h>
#include <memory>
#include <string>
#include <utility>
#include <vector>

// What connections of the library share. Each may throw what the library throws. [main, worker, sender]
namespace volvelle {

// The names of the ports that an output can send to, or an input hear.
std::vector<std::string> portNames(RtMidi& midi);

// Holds what must never be closed, and is never destroyed itself.
void keepForGood(std::shared_ptr<void> connection);

// Ends a connection. One to a dead JACK server is kept for good: JACK's library crashes where its port is
// closed.
template <class Midi>
void endConnection(std::unique_ptr<Midi> midi)
{
    if (midi->getCurrentApi() == RtMidi::UNIX_JACK && !isJackServerRunning()) {
        keepForGood(std::shared_ptr<Midi>(std::move(midi)));
    }
}

} // namespace volvelle
