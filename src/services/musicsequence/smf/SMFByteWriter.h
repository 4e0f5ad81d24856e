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
    static constexpr std::uint64_t mostFillers = (64U << 20U) / 7; // of a file, of seven bytes each

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

    // A delta time. A gap too long for a number is bridged by fillers, sequencer-specific metas without
    // bytes; true where there are any.
    bool putDelta(std::uint64_t ticks);

    // Whether more than mostFillers were asked for: the bytes are then of no use.
    bool isOverfull() const { return overfull; }

    // Writes over four bytes.
    void set32(std::size_t place, std::uint32_t value);

    std::size_t size() const { return bytes.size(); }

private:
    std::vector<std::uint8_t>& bytes;
    std::uint64_t fillersLeft = mostFillers;
    bool overfull = false;
};

} // namespace volvelle
