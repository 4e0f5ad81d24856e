#pragma once

namespace volvelle {

// A colour; all parts are from 0 to 1. [any]
struct UIColor {
    double red = 0.0;
    double green = 0.0;
    double blue = 0.0;
    double alpha = 1.0;

    bool operator==(const UIColor&) const = default;

    struct HSB {
        double hue = 1.0;
        double saturation = 1.0;
        double brightness = 1.0;
    };

    // Hue, saturation and brightness from 0 to 1; a hue of 1 is red again.
    static UIColor fromHSB(const HSB& parts, double alpha);

    // Three equal parts, opaque.
    static UIColor gray(double white);

    static UIColor redColor();

    // Nothing at all.
    static UIColor clearColor();

    // A grey has the hue 0, black the saturation 0 too.
    HSB getHSB() const;

    UIColor withAlpha(double value) const;
};

} // namespace volvelle
