#pragma once

#include "wire/ShortMessage.h"

#include <cstdint>

namespace volvelle {

// One message of a flattened sequence: what is sent, when, and by which track.
struct SequencerEvent {
    enum Kind : std::uint8_t { noteOn, noteOff, state, other, longMessage };

    double seconds = 0.0;             // from the start, at rate 1.0
    double partner = 0.0;             // seconds of a note-on's end, of a note-off's begin
    std::uint32_t longIndex = 0;      // of a long message
    std::uint16_t track = 0;          // 0: the tempo track
    ShortMessage bytes{};             // of all others
    std::uint8_t releaseVelocity = 0; // of a note-on
    Kind kind = other;                // state: what a later start must bring up to date

    int length() const { return shortMessageLength(bytes[0]); }
};

} // namespace volvelle
