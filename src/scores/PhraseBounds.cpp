#include "scores/PhraseBounds.h"

#include <array>

namespace volvelle {

const PhraseBounds& phraseBounds(ScoreKind kind)
{
    static constexpr std::array<PhraseBounds, 5> bounds = {{
        {"a chord pattern", 48, 72, 3, 8, 4},
        {"a chord phrase", 45, 81, 12, 48, 4},
        {"a lead", 67, 90, 11, 24, 2},
        {"a bass", 28, 50, 10, 24, 2},
        {"a drum phrase", 27, 87, 40, 160, 5},
    }};
    return bounds[static_cast<std::size_t>(kind)];
}

} // namespace volvelle
