#pragma once

#include <cstdint>

namespace volvelle {

// A parameter that is set through its number, with the data that came for it.
struct ChannelParameter {
    static constexpr std::int8_t unset = -1;
    static constexpr std::uint16_t notRegistered = 1U << 14U;
    static constexpr std::uint16_t none = 127U << 7U | 127U; // selects no parameter

    std::uint16_t number = none; // 14 bits, and notRegistered
    std::int8_t high = unset;    // of controller 6
    std::int8_t lowBefore = 0;   // what controller 38 stood at when `high` came, for whatever parameter
    std::int8_t low = unset;     // of controller 38
};

} // namespace volvelle
