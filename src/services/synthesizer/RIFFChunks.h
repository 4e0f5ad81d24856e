#pragma once

#include <cstddef>
#include <cstdint>
#include <span>

namespace volvelle {

// Four characters as the number that they are in a file, the first in the lowest byte.
consteval std::uint32_t fourCharacters(const char (&text)[5])
{
    std::uint32_t code = 0;
    for (int i = 3; i >= 0; --i) {
        code = (code << 8U) | static_cast<std::uint8_t>(text[i]);
    }
    return code;
}

// The little-endian number at `at`; bytes that are not there count as 0. [any]
constexpr std::uint32_t littleEndian(std::span<const std::uint8_t> bytes, std::size_t at, std::size_t size)
{
    std::uint32_t number = 0;
    for (std::size_t i = 0; i < size && at + i < bytes.size(); ++i) {
        number |= static_cast<std::uint32_t>(bytes[at + i]) << (8U * i);
    }
    return number;
}

constexpr std::uint16_t unsigned16(std::span<const std::uint8_t> bytes, std::size_t at)
{
    return static_cast<std::uint16_t>(littleEndian(bytes, at, 2));
}

constexpr std::int16_t signed16(std::span<const std::uint8_t> bytes, std::size_t at)
{
    return static_cast<std::int16_t>(unsigned16(bytes, at));
}

constexpr std::uint32_t unsigned32(std::span<const std::uint8_t> bytes, std::size_t at)
{
    return littleEndian(bytes, at, 4);
}

constexpr std::int32_t signed32(std::span<const std::uint8_t> bytes, std::size_t at)
{
    return static_cast<std::int32_t>(unsigned32(bytes, at));
}

// One chunk. A list carries its kind in `list`, and `data` begins after it.
struct RIFFChunk {
    std::uint32_t id = 0;
    std::uint32_t list = 0; // 0 where the chunk is no list
    std::span<const std::uint8_t> data;
    std::size_t position = 0; // of the chunk's header, counted from the start of the walked bytes
    bool isCut = false;       // the header promises more than is there
};

// A walk over the chunks that stand one after another in `bytes`. Never leaves them, and always moves on.
// The bytes outlive the walk. [any]
class RIFFChunks {
public:
    static constexpr std::size_t headerSize = 8;

    explicit RIFFChunks(std::span<const std::uint8_t> bytes) : rest(bytes) {}

    // Steps to the next chunk; false past the last.
    bool next(RIFFChunk& chunk);

private:
    std::span<const std::uint8_t> rest;
    std::size_t position = 0;
};

inline bool RIFFChunks::next(RIFFChunk& chunk)
{
    if (rest.size() < headerSize) {
        return false;
    }
    const std::size_t promised = unsigned32(rest, 4);
    const std::size_t room = rest.size() - headerSize;
    const std::size_t size = promised < room ? promised : room;
    chunk = {unsigned32(rest, 0), 0, rest.subspan(headerSize, size), position, promised > room};
    const bool isList = chunk.id == fourCharacters("LIST") || chunk.id == fourCharacters("RIFF");
    if (isList && size >= 4) {
        chunk.list = unsigned32(chunk.data, 0);
        chunk.data = chunk.data.subspan(4);
    }
    const std::size_t padded = headerSize + size + (size & 1U);
    const std::size_t step = padded < rest.size() ? padded : rest.size();
    rest = rest.subspan(step);
    position += step;
    return true;
}

} // namespace volvelle
