#pragma once

// Places and sizes on a plane whose y grows downwards. [any]
namespace volvelle {

struct CGPoint {
    double x = 0.0;
    double y = 0.0;

    bool operator==(const CGPoint&) const = default;
};

struct CGSize {
    double width = 0.0;
    double height = 0.0;

    bool operator==(const CGSize&) const = default;
};

struct CGRect {
    double x = 0.0;
    double y = 0.0;
    double width = 0.0;
    double height = 0.0;

    bool operator==(const CGRect&) const = default;

    // The same place with a width and a height that aren't negative.
    CGRect standardized() const;
};

} // namespace volvelle
