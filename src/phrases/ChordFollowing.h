#pragma once

#include <cstdint>
#include <optional>

// The rule by which a note follows a chord: it goes up to the next free tone. [any]
namespace volvelle {

inline constexpr int numberOfKeys = 128;
inline constexpr int farthestMove = 6; // semitones that a chord pattern is moved up or down at most

// Whether a key is a tone of the chord, told by its pitch class, and not taken at the note's position.
template <class IsTone, class IsTaken>
bool isFreeTone(std::uint8_t key, const IsTone& isTone, const IsTaken& isTaken)
{
    return isTone(key % 12) && !isTaken(key);
}

// The first free key from `key` upward, after the last key from 0 on; nothing where none is free.
template <class IsFree>
std::optional<std::uint8_t> nextFreeKey(std::uint8_t key, const IsFree& isFree)
{
    for (int tried = 0; tried <= numberOfKeys; ++tried) {
        if (isFree(key)) {
            return key;
        }
        key = key >= numberOfKeys - 1 ? std::uint8_t{0} : static_cast<std::uint8_t>(key + 1);
    }
    return std::nullopt;
}

} // namespace volvelle
