#include "cli/sound/OutputSink.h"

namespace volvelle {

bool OutputSink::open(AudioSource& source, std::string& error)
{
    if (!output.start(source, error)) {
        return false;
    }
    output.waitForDevice(patience);
    return true;
}

} // namespace volvelle
