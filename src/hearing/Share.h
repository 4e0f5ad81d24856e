#pragma once

#include <string>

namespace volvelle {

// How many of how many.
struct Share {
    long part = 0;
    long whole = 0;

    // 0 to 1; 0 of nothing.
    double value() const { return whole == 0 ? 0.0 : static_cast<double>(part) / static_cast<double>(whole); }

    Share& operator+=(const Share& other)
    {
        part += other.part;
        whole += other.whole;
        return *this;
    }

    bool operator==(const Share&) const = default;
};

// A share from 0 to 1 for people, in tenths: "8.3 %".
std::string percentText(double share);

} // namespace volvelle
