#include "app/circle/CGAffineTransform.h"

#include <cmath>

namespace volvelle {

CGPoint CGAffineTransform::apply(CGPoint point) const
{
    return {a * point.x + c * point.y + tx, b * point.x + d * point.y + ty};
}

CGAffineTransform CGAffineTransform::translated(double x, double y) const
{
    const CGPoint origin = apply({x, y});
    return {a, b, c, d, origin.x, origin.y};
}

CGAffineTransform CGAffineTransform::scaled(double x, double y) const
{
    return {a * x, b * x, c * y, d * y, tx, ty};
}

CGAffineTransform CGAffineTransform::rotated(double angle) const
{
    const double cosine = std::cos(angle);
    const double sine = std::sin(angle);
    return {
        a * cosine + c * sine, b * cosine + d * sine, c * cosine - a * sine, d * cosine - b * sine, tx, ty};
}

CGSize CGAffineTransform::scales() const
{
    return {std::hypot(a, c), std::hypot(b, d)};
}

double CGAffineTransform::rotation() const
{
    const CGSize scale = scales();
    return std::atan2(-c * scale.height, d * scale.width);
}

} // namespace volvelle
