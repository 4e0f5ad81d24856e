#include "hearing/Share.h"

#include "base/Text.h"

#include <cmath>

namespace volvelle {

std::string percentText(double share)
{
    constexpr double tenths = 1000; // of a percent, in all
    std::string number = text(std::round(share * tenths) / (tenths / 100));
    if (number.ends_with(".0")) {
        number.resize(number.size() - 2);
    }
    return number + " %";
}

} // namespace volvelle
