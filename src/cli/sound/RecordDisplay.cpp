#include "cli/sound/RecordDisplay.h"

#include "base/Text.h"
#include "midi/NoteNames.h"

#include <cmath>
#include <cstddef>

namespace volvelle {

std::string recordLine(double seconds, int events, std::span<const int> keys)
{
    std::string line = concat(std::floor(seconds * 10.0) / 10.0, " seconds  ", events, " events ");
    for (const int key : keys) {
        line += concat(" ", noteNames().values[static_cast<std::size_t>(key)]);
    }
    return keys.empty() ? line + " -" : line;
}

} // namespace volvelle
