#include "services/musicsequence/smf/SMFChunks.h"

#include <algorithm>
#include <cstring>

namespace volvelle {

bool SMFChunks::has(std::size_t place, std::string_view name) const
{
    return place <= bytes.size() && bytes.size() - place >= name.size() &&
           std::memcmp(bytes.data() + place, name.data(), name.size()) == 0;
}

std::size_t SMFChunks::find(std::size_t from, std::size_t limit, std::string_view name) const
{
    const std::size_t end = std::min(limit, bytes.size());
    if (from >= end) {
        return none;
    }
    const void* const found = memmem(bytes.data() + from, end - from, name.data(), name.size());
    return found == nullptr
               ? none
               : static_cast<std::size_t>(static_cast<const std::uint8_t*>(found) - bytes.data());
}

std::uint32_t SMFChunks::claimedLength(std::size_t place) const
{
    return static_cast<std::uint32_t>(pairAt(place + 4)) << 16U |
           static_cast<std::uint32_t>(pairAt(place + 6));
}

bool SMFChunks::mayBeginAt(std::size_t place) const
{
    if (has(place, "MTrk")) {
        return true;
    }
    if (place + headSize > bytes.size()) {
        return false;
    }
    const auto name = bytes.subspan(place, 4);
    const auto isReadable = [](std::uint8_t byte) { return byte >= 0x20 && byte < 0x7F; };
    return std::ranges::all_of(name, isReadable) && claimedLength(place) <= bytes.size() - place - headSize;
}

} // namespace volvelle
