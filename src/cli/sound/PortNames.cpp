#include "cli/sound/PortNames.h"

namespace volvelle {

int tellPorts(const Result<std::vector<std::string>>& names, CommandOutput& output)
{
    if (!names) {
        return output.failure(names.error());
    }
    for (const std::string& name : *names) {
        output.result(name);
    }
    if (names->empty()) {
        output.remark("No other program has a MIDI port open.");
    }
    return exitDone;
}

} // namespace volvelle
