#pragma once

#include "services/musicsequence/smf/SMFEvents.h"

#include <array>
#include <cstdint>

namespace volvelle {

// The notes of a file track that wait for their end: per channel and key a queue, first in, first out, linked
// through the `end` fields of the waiting notes.
class SMFOpenNotes {
public:
    SMFOpenNotes() { heads.fill(none); }

    // The last event of `events` is a note that begins.
    void begin(SMFEvents& events)
    {
        const auto index = static_cast<std::uint32_t>(events.size() - 1);
        const std::size_t key = keyOf(events[index].status, events[index].data1);
        if (heads[key] == none) {
            heads[key] = index;
        } else {
            events[tails[key]].end = index;
        }
        tails[key] = index;
        ++openCount;
    }

    // Ends the first note that waits; false where none does.
    bool end(SMFEvents& events, std::uint8_t status, std::uint8_t note, std::uint64_t tick,
             std::uint8_t release)
    {
        const std::size_t key = keyOf(status, note);
        const std::uint32_t index = heads[key];
        if (index == none) {
            return false;
        }
        heads[key] = index == tails[key] ? none : static_cast<std::uint32_t>(events[index].end);
        events[index].end = tick;
        events[index].length = release;
        --openCount;
        return true;
    }

    // Ends all that wait, and tells how many they were.
    std::size_t endAll(SMFEvents& events, std::uint64_t tick)
    {
        const std::size_t count = openCount;
        for (std::size_t key = 0; openCount > 0; ++key) {
            const auto status = static_cast<std::uint8_t>(key / 128);
            while (end(events, status, static_cast<std::uint8_t>(key % 128), tick, 0)) {
            }
        }
        return count;
    }

private:
    static constexpr std::uint32_t none = 0xFFFFFFFF;

    static std::size_t keyOf(std::uint8_t status, std::uint8_t note)
    {
        return (status & 0x0FU) * 128U + note;
    }

    std::array<std::uint32_t, 2048> heads{};
    std::array<std::uint32_t, 2048> tails{}; // meant only where there is a head
    std::size_t openCount = 0;
};

} // namespace volvelle
