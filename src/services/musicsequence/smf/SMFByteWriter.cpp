#include "services/musicsequence/smf/SMFByteWriter.h"

#include <algorithm>

namespace volvelle {

void SMFByteWriter::makeRoom(std::size_t count)
{
    if (bytes.capacity() - bytes.size() < count) {
        bytes.reserve(std::max(bytes.size() + count, bytes.capacity() * 2));
    }
}

void SMFByteWriter::put(std::span<const std::uint8_t> run)
{
    bytes.insert(bytes.end(), run.begin(), run.end());
}

void SMFByteWriter::putName(std::string_view name)
{
    for (const char character : name) {
        put(static_cast<std::uint8_t>(character));
    }
}

void SMFByteWriter::put16(std::uint32_t value)
{
    put(static_cast<std::uint8_t>(value >> 8U));
    put(static_cast<std::uint8_t>(value));
}

void SMFByteWriter::put32(std::uint32_t value)
{
    put16(value >> 16U);
    put16(value);
}

void SMFByteWriter::putNumber(std::uint32_t value)
{
    for (unsigned shift = 21; shift > 0; shift -= 7) {
        if (value >> shift != 0) {
            put(static_cast<std::uint8_t>(0x80U | (value >> shift)));
        }
    }
    put(static_cast<std::uint8_t>(value & 0x7FU));
}

bool SMFByteWriter::putDelta(std::uint64_t ticks)
{
    const std::uint64_t fillers = ticks == 0 ? 0 : (ticks - 1) / greatestNumber;
    overfull = overfull || fillers > fillersLeft;
    for (std::uint64_t i = 0; i < fillers && !overfull; ++i) {
        putNumber(greatestNumber);
        put(0xFF);
        put(0x7F);
        put(0);
        --fillersLeft;
    }
    putNumber(static_cast<std::uint32_t>(ticks - fillers * greatestNumber));
    return fillers > 0;
}

void SMFByteWriter::set32(std::size_t place, std::uint32_t value)
{
    for (unsigned i = 0; i < 4; ++i) {
        bytes[place + i] = static_cast<std::uint8_t>(value >> (24U - 8U * i));
    }
}

} // namespace volvelle
