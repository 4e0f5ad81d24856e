#pragma once

#include <cstddef>
#include <limits>

namespace volvelle {

// A place in an event list that knows its cursors and moves them with the events. A cursor whose event was
// deleted stands on the one that followed; one past the end stays past the end, whatever is appended.
struct EventCursor {
    static constexpr std::size_t behindEnd = std::numeric_limits<std::size_t>::max();

    std::size_t index = 0;
};

} // namespace volvelle
