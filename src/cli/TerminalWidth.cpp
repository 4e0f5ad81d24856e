#include "cli/TerminalWidth.h"

#include <limits>
#include <sys/ioctl.h>

namespace volvelle {

std::size_t terminalColumns(int descriptor)
{
    winsize size{};
    const bool isKnown = ioctl(descriptor, TIOCGWINSZ, &size) == 0 && size.ws_col > 0;
    return isKnown ? size.ws_col : std::numeric_limits<std::size_t>::max();
}

} // namespace volvelle
