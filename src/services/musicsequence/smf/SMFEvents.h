#pragma once

#include "services/musicsequence/smf/SMFEvent.h"

#include <algorithm>
#include <cstddef>
#include <ranges>
#include <vector>

namespace volvelle {

// The events of all tracks of a file, one track after the other, in blocks that never move.
class SMFEvents {
public:
    // There can be `most` events.
    explicit SMFEvents(std::size_t most = 0) : room(std::clamp<std::size_t>(most, 1, blockSize)) {}

    void add(const SMFEvent& event)
    {
        if (blocks.empty() || blocks.back().size() == blockSize) {
            blocks.emplace_back().reserve(room);
        }
        blocks.back().push_back(event);
    }

    SMFEvent& operator[](std::size_t index) { return blocks[index / blockSize][index % blockSize]; }

    const SMFEvent& operator[](std::size_t index) const
    {
        return blocks[index / blockSize][index % blockSize];
    }

    std::size_t size() const
    {
        return blocks.empty() ? 0 : (blocks.size() - 1) * blockSize + blocks.back().size();
    }

    auto run(std::size_t first, std::size_t count)
    {
        return std::views::iota(first, first + count) |
               std::views::transform([this](std::size_t index) -> SMFEvent& { return (*this)[index]; });
    }

    auto run(std::size_t first, std::size_t count) const
    {
        return std::views::iota(first, first + count) |
               std::views::transform([this](std::size_t index) -> const SMFEvent& { return (*this)[index]; });
    }

private:
    static constexpr std::size_t blockSize = 4096;

    std::vector<std::vector<SMFEvent>> blocks;
    std::size_t room;
};

} // namespace volvelle
