#pragma once

namespace volvelle {

// The beats of a full circle for music of so many beats: its whole ones, at least 16. A length that no number
// of 64 bits holds is a fatal stop. [any]
double circleBeats(double length);

} // namespace volvelle
