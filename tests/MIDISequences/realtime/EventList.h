#pragma once

#include "MIDISequences/AURenderEvent.h"

#include <compare>
#include <cstdint>
#include <memory>
#include <ostream>
#include <random>
#include <vector>

namespace volvelle::test {

using Bytes = std::vector<std::uint8_t>;

// What a record of a list says.
struct ListEvent {
    std::int64_t stamp = 0;
    Bytes bytes;
    std::uint8_t cable = 0;
    AURenderEventType type = AURenderEventMIDI;

    bool operator==(const ListEvent&) const = default;

    std::uint8_t status() const { return bytes.empty() ? std::uint8_t{0} : bytes.front(); }
};

std::ostream& operator<<(std::ostream& stream, const ListEvent& event);

using ListEvents = std::vector<ListEvent>;

// A list of records, each in a block of just its size.
class EventList {
public:
    explicit EventList(const ListEvents& events);

    const AURenderEvent* head() const;

private:
    std::vector<std::unique_ptr<std::byte[]>> blocks;
};

// What stands in a list.
ListEvents toldBy(const AURenderEvent* head);

// Up to 40 events of all kinds, of 0 to 300 bytes, at times that often fall together.
ListEvents randomEvents(std::mt19937& random);

inline int draw(std::mt19937& random, int lower, int upper)
{
    return lower + static_cast<int>(random() % static_cast<unsigned>(upper - lower + 1));
}

} // namespace volvelle::test
