#pragma once

namespace volvelle::test {

// Has a message bus of this program's own, as session and as system bus, for the life of the program; to be
// called before Qt looks for one. False where no bus can be started.
bool beginPrivateBus();
void endPrivateBus();

} // namespace volvelle::test
