#pragma once

#include "app/circle/CircleDrawing.h"

#include <vector>

namespace volvelle {

// Which arcs of a drawing are painted where a length of 1 is so many pixels: all, where that takes a second
// or two. Else the topmost of those that could not be told apart, and where these are too many still, a share
// of each ring, never none. [any]
std::vector<bool> chooseArcs(const CircleDrawing& drawing, double pixels);

} // namespace volvelle
