#pragma once

#include <cstdint>
#include <span>
#include <string_view>
#include <vector>

namespace volvelle {

// Appends the numbers of a Standard MIDI File to its bytes.
class SMFByteWriter {
public:
    static constexpr std::uint32_t greatestNumber = 0x0FFFFFFF;

    explicit SMFByteWriter(std::vector<std::uint8_t>& target) : bytes(target) {}

    // Prepares for about so many bytes more.
    void makeRoom(std::size_t count);

    void put(std::uint8_t byte) { bytes.push_back(byte); }

    void put(std::span<const std::uint8_t> run);
    void putName(std::string_view name);
    void put16(std::uint32_t value);
    void put32(std::uint32_t value);

    // In seven bits a byte; `value` is at most greatestNumber.
    void putNumber(std::uint32_t value);

    // Writes over four bytes.
    void set32(std::size_t place, std::uint32_t value);

    std::size_t size() const { return bytes.size(); }

private:
    std::vector<std::uint8_t>& bytes;
};

} // namespace volvelle
