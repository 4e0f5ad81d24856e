#include "cli/sound/TerminalLine.h"

#include "base/Text.h"
#include "cli/TerminalWidth.h"
#include "cli/sound/TerminalKeys.h"

#include <algorithm>
#include <cstdio>
#include <unistd.h>
#include <utility>

namespace volvelle {

void TerminalLine::show(std::string line)
{
    if (isatty(STDOUT_FILENO) == 0 || TerminalKeys::isInBackgroundOf(STDOUT_FILENO)) {
        return;
    }
    line.resize(std::min(line.size(), terminalColumns(STDOUT_FILENO) - 1));
    if (line != shown) {
        const std::string whole = concat("\r", line, "\x1B[K");
        std::fwrite(whole.data(), 1, whole.size(), stdout);
        std::fflush(stdout);
        shown = std::move(line);
    }
}

void TerminalLine::finish()
{
    if (!shown.empty()) {
        std::fputs("\n", stdout);
        std::fflush(stdout);
        shown.clear();
    }
}

} // namespace volvelle
