#pragma once

#include <functional>

namespace volvelle::test {

// Called once, before the next renaming of a file in this program.
inline std::function<void()> beforeRenaming;

// How many descriptors were synchronised with the disk.
inline int synchronised = 0;

} // namespace volvelle::test
