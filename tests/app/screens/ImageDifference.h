#pragma once

#include <QImage>

#include <algorithm>
#include <cstdlib>

namespace volvelle::test {

// The greatest difference of a colour at any place, of 255. Both pictures have one size.
inline int greatestDifference(const QImage& a, const QImage& b)
{
    int most = 0;
    for (int y = 0; y < a.height(); ++y) {
        for (int x = 0; x < a.width(); ++x) {
            const QRgb p = a.pixel(x, y);
            const QRgb q = b.pixel(x, y);
            most = std::max({most, std::abs(qRed(p) - qRed(q)), std::abs(qGreen(p) - qGreen(q)),
                             std::abs(qBlue(p) - qBlue(q))});
        }
    }
    return most;
}

} // namespace volvelle::test
