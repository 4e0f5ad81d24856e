#pragma once

// The user's wish that what runs in a terminal ends in order.
namespace volvelle {

// From now on what asks the process to end is such a wish: Ctrl-C, a closed terminal or pipe; but for signals
// that the caller wants ignored. In the background the terminal is left alone, and does not stop the program.
// [main]
void listenForEndWish();

// True once for all wishes since the last call. [main]
bool takeEndWish();

} // namespace volvelle
