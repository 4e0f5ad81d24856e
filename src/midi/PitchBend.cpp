#include "midi/PitchBend.h"

namespace volvelle {

std::uint16_t PitchBend::getIntValue()
{
    ptr = &value;
    *ptr = static_cast<std::uint16_t>(msb + 256 * lsb);
    ptr = nullptr;
    return value;
}

void PitchBend::setIntValue(std::uint16_t number)
{
    ptr = &value;
    *ptr = number;
    msb = static_cast<std::uint8_t>(*ptr % 256);
    lsb = static_cast<std::uint8_t>(*ptr / 256);
    ptr = nullptr;
}

} // namespace volvelle
