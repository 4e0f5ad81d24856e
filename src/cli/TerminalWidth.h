#pragma once

#include <cstddef>

namespace volvelle {

// The columns of the terminal behind a descriptor, at least one; without a bound where they are not
// known. [any]
std::size_t terminalColumns(int descriptor);

} // namespace volvelle
