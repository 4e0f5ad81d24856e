#include "services/audiodevice/RtMidiConnection.h"

#include <mutex>

namespace volvelle {

std::vector<std::string> portNames(RtMidi& midi)
{
    std::vector<std::string> names;
    const unsigned int count = midi.getPortCount();
    names.reserve(count);
    for (unsigned int i = 0; i < count; ++i) {
        names.push_back(midi.getPortName(i));
    }
    return names;
}

void keepForGood(std::shared_ptr<void> connection)
{
    static auto* const mutex = new std::mutex;
    static auto* const kept = new std::vector<std::shared_ptr<void>>;
    const std::lock_guard lock(*mutex);
    kept->push_back(std::move(connection));
}

} // namespace volvelle
