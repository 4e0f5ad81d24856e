#pragma once

#include "app/circle/CGRect.h"
#include "app/circle/UIColor.h"

#include <array>
#include <vector>

namespace volvelle {

// What is to be painted, in coordinates of the frame. Lines and arcs have round ends. [any]

struct CircleLine {
    CGPoint from;
    CGPoint to;
    double width = 0.0;
    UIColor color;

    bool operator==(const CircleLine&) const = default;
};

// Corners of a rectangle, turned perhaps; nothing is painted outside it.
using CircleClip = std::array<CGPoint, 4>;

// Part of a circle, stretched about its centre after it was stroked. A sweep of 0 is a round dot.
struct CircleArc {
    CGPoint centre;
    double radius = 0.0;
    double startAngle = 0.0; // radians clockwise from three o'clock
    double sweep = 0.0;      // radians clockwise, 0 to 2 pi
    double width = 0.0;
    UIColor color;
    double stretch = 1.0;          // height over width
    std::vector<CircleClip> clips; // none where the arc stays inside all of them

    bool operator==(const CircleArc&) const = default;

    // False where an angle or a length is infinite or none: there is nothing to paint.
    bool hasPlace() const;
};

struct CircleDrawing {
    std::vector<CircleLine> lines; // below the arcs
    std::vector<CircleArc> arcs;   // in the order of painting

    bool operator==(const CircleDrawing&) const = default;
};

} // namespace volvelle
