#include "midi/ConvertTempo.h"

#include "base/Checked.h"

namespace volvelle {

double ConvertTempo::numberToTempo(std::uint32_t number) const
{
    return static_cast<double>(number) / 60000000.0;
}

std::uint32_t ConvertTempo::tempoToNumber(double tempo) const
{
    return checkedCast<std::uint32_t>(tempo * 500000.0);
}

std::uint32_t ConvertTempo::bytesToNumber(const std::vector<std::uint8_t>& bytes) const
{
    std::uint32_t number = 0;
    for (int i = 0; i < 4; ++i) {
        number = number << 8U | checkedAt(bytes, i);
    }
    return number;
}

std::vector<std::uint8_t> ConvertTempo::numberToBytes(std::uint32_t number) const
{
    return {static_cast<std::uint8_t>(number >> 24U), static_cast<std::uint8_t>(number >> 16U & 0xFFU),
            static_cast<std::uint8_t>(number >> 8U & 0xFFU), static_cast<std::uint8_t>(number & 0xFFU)};
}

double ConvertTempo::bytesToTempo(const std::vector<std::uint8_t>& bytes) const
{
    return numberToTempo(bytesToNumber(bytes));
}

std::vector<std::uint8_t> ConvertTempo::tempoToBytes(double tempo) const
{
    return numberToBytes(tempoToNumber(tempo));
}

} // namespace volvelle
