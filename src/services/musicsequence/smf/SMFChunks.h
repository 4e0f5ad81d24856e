#pragma once

#include <cstddef>
#include <cstdint>
#include <span>
#include <string_view>

namespace volvelle {

// The chunks of a file, by their places.
class SMFChunks {
public:
    static constexpr std::size_t headSize = 8;
    static constexpr std::size_t none = static_cast<std::size_t>(-1);

    explicit SMFChunks(std::span<const std::uint8_t> file) : bytes(file) {}

    // Whether the four characters stand there.
    bool has(std::size_t place, std::string_view name) const;

    // Where they stand next, from `from` up to `limit`; none where they do not.
    std::size_t find(std::size_t from, std::size_t limit, std::string_view name) const;

    // The length that the chunk there claims; its head must be whole.
    std::uint32_t claimedLength(std::size_t place) const;

    // Whether a chunk may begin there: a track, or one of a readable name that fits into the file.
    bool mayBeginAt(std::size_t place) const;

    // Two bytes, high one first.
    int pairAt(std::size_t place) const { return bytes[place] * 256 + bytes[place + 1]; }

    std::size_t size() const { return bytes.size(); }

private:
    std::span<const std::uint8_t> bytes;
};

} // namespace volvelle
