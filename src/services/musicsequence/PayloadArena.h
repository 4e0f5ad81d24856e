#pragma once

#include <cstddef>
#include <cstdint>
#include <vector>

namespace volvelle {

// The records of a track that are too long for their event, one after the other, each aligned to eight
// bytes.
class PayloadArena {
public:
    // Room of `size` bytes, all 0; its place is valid as long as the arena, the address of its bytes until
    // the next addition.
    std::uint64_t add(std::size_t size);

    // The same, filled from `record`, which may stand in this arena.
    std::uint64_t add(std::size_t size, const void* record, std::size_t recordSize);

    void reserve(std::size_t wordCount) { words.reserve(wordCount); }

    void* at(std::uint64_t place) { return words.data() + place; }

    const void* at(std::uint64_t place) const { return words.data() + place; }

    std::size_t wordCount() const { return words.size(); }

    static std::size_t wordsFor(std::size_t size)
    {
        return (size + sizeof(std::uint64_t) - 1) / sizeof(std::uint64_t);
    }

private:
    std::vector<std::uint64_t> words;
};

} // namespace volvelle
