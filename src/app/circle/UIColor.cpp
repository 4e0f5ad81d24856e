#include "app/circle/UIColor.h"

#include <algorithm>
#include <cmath>

namespace volvelle {

UIColor UIColor::fromHSB(const HSB& parts, double alpha)
{
    // The share of saturation that a part loses at its place on the circle, in sixths.
    const auto part = [&](double sixths) {
        const double place = std::fmod(sixths + parts.hue * 6.0, 6.0);
        const double share = std::clamp(std::min(place, 4.0 - place), 0.0, 1.0);
        return parts.brightness * (1.0 - parts.saturation * share);
    };
    return {part(5.0), part(3.0), part(1.0), alpha};
}

UIColor UIColor::gray(double white)
{
    return {white, white, white, 1.0};
}

UIColor UIColor::clearColor()
{
    return {0.0, 0.0, 0.0, 0.0};
}

UIColor UIColor::redColor()
{
    return {1.0, 0.0, 0.0, 1.0};
}

UIColor::HSB UIColor::getHSB() const
{
    const double most = std::max({red, green, blue});
    const double range = most - std::min({red, green, blue});
    if (range <= 0.0) {
        return {0.0, 0.0, most};
    }
    double sixths = 4.0 + (red - green) / range;
    if (most == red) {
        sixths = (green - blue) / range;
    } else if (most == green) {
        sixths = 2.0 + (blue - red) / range;
    }
    return {(sixths < 0.0 ? sixths + 6.0 : sixths) / 6.0, range / most, most};
}

UIColor UIColor::withAlpha(double value) const
{
    return {red, green, blue, value};
}

} // namespace volvelle
