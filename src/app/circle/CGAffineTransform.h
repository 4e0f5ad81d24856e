#pragma once

#include "app/circle/CGRect.h"

namespace volvelle {

// x' = a x + c y + tx, y' = b x + d y + ty. What is put in front takes place first. [any]
struct CGAffineTransform {
    double a = 1.0;
    double b = 0.0;
    double c = 0.0;
    double d = 1.0;
    double tx = 0.0;
    double ty = 0.0;

    CGPoint apply(CGPoint point) const;

    CGAffineTransform translated(double x, double y) const;
    CGAffineTransform scaled(double x, double y) const;

    // Clockwise on a plane whose y grows downwards, in radians.
    CGAffineTransform rotated(double angle) const;

    // How many units across and down one unit becomes, after a turn.
    CGSize scales() const;

    // The turn that comes before the scales, radians in -pi to pi.
    double rotation() const;
};

} // namespace volvelle
