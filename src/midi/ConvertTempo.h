#pragma once

#include <cstdint>
#include <vector>

namespace volvelle {

// Turns a tempo into the four bytes of a tempo record and back. The two scales are not inverse to each other:
// a tempo of 120.0 gives the number 60,000,000, and that number gives back 1.0.
class ConvertTempo {
public:
    // number / 60,000,000.
    double numberToTempo(std::uint32_t number) const;

    // tempo * 500,000, truncated; a product that does not fit is a fatal stop.
    std::uint32_t tempoToNumber(double tempo) const;

    // The first four bytes, most significant first; fewer are a fatal stop.
    std::uint32_t bytesToNumber(const std::vector<std::uint8_t>& bytes) const;

    // Always four bytes, most significant first.
    std::vector<std::uint8_t> numberToBytes(std::uint32_t number) const;

    double bytesToTempo(const std::vector<std::uint8_t>& bytes) const;
    std::vector<std::uint8_t> tempoToBytes(double tempo) const;
};

} // namespace volvelle
