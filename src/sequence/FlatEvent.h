#pragma once

#include "MIDISequences/AUMIDIEvents.h"

#include <array>
#include <cstdint>
#include <memory>
#include <span>

namespace volvelle {

// An event of the flat list on its way: the bytes, the time, and its place among events of one time. What is
// after the head still stands in the tree, which must not change before the event is made.
class FlatEvent {
public:
    enum class Rank : std::uint8_t { noteOff, other };

    std::array<std::uint8_t, 3> head{};
    std::uint8_t headCount = 0;
    std::span<const std::uint8_t> body;
    std::int64_t time = 0; // samples
    double beats = 0.0;
    double duration = 0.0; // beats
    std::uint8_t meta = 0x7F;
    Rank rank = Rank::other;

    // With all bytes.
    std::shared_ptr<AUMIDIEventEx> event() const;

    // With the head alone, or the first three bytes of a body without head.
    AUMIDIEvent record() const;

    // By time, then by rank.
    static bool isBefore(const FlatEvent& a, const FlatEvent& b);
};

} // namespace volvelle
