#include "services/musicsequence/PayloadArena.h"

#include <algorithm>
#include <cstring>

namespace volvelle {

std::uint64_t PayloadArena::add(std::size_t size)
{
    const std::size_t place = words.size();
    words.resize(place + wordsFor(size));
    return place;
}

std::uint64_t PayloadArena::add(std::size_t size, const void* record, std::size_t recordSize)
{
    const std::size_t needed = words.size() + wordsFor(size);
    std::vector<std::uint64_t> before; // keeps the record alive where it stands in here
    if (needed > words.capacity()) {
        before = std::move(words);
        words.clear();
        words.reserve(std::max(needed, before.size() * 2));
        words.assign(before.begin(), before.end());
    }
    const std::uint64_t place = add(size);
    std::memcpy(at(place), record, recordSize);
    return place;
}

} // namespace volvelle
